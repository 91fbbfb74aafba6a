#include "ui/kit/menu_button.h"

#include <QMouseEvent>

#include <algorithm>

#include "ui/kit/icon.h"
#include "ui/kit/painting.h"
#include "ui/kit/theme.h"

using namespace Qt::StringLiterals;

namespace tralio {
namespace {

constexpr int buttonHeight = 26;
constexpr int buttonPadding = 8;
constexpr int pickerEndPadding = 6;
constexpr int buttonGap = 4;

const Icon& chevron() {
    static const Icon icon{.name = u"chevron.up.chevron.down"_s, .pointSize = 9};
    return icon;
}

}  // namespace

MenuButton::MenuButton(const TextStyle& style, const QString& iconName, QWidget* parent)
    : Control({}, parent), m_style(style), m_iconName(iconName) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &Control::clicked, this, &MenuButton::open);
}

void MenuButton::becomePicker() {
    m_isPicker = true;
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    update();
}

MenuButton::~MenuButton() {
    // Here, since otherwise a base class destructor would close the menu, whose signal would reach a
    // half-destroyed button.
    if (m_menu)
        m_menu->closeWithOwner();
}

void MenuButton::setEntries(const QList<MenuEntry>& entries) {
    m_entries = entries;
}

QSize MenuButton::sizeHint() const {
    const Icon icon{.name = m_iconName, .pointSize = 10};
    const int lead = icon.isNull() ? 0 : icon.box() + buttonGap;
    return {
        2 * buttonPadding + lead + textWidth(m_style, title()) + buttonGap + chevron().box(), buttonHeight};
}

QAccessible::State MenuButton::spokenState(QAccessible::State state) const {
    state = Control::spokenState(state);
    state.hasPopup = true;
    state.expandable = true;
    state.expanded = m_menu != nullptr;
    return state;
}

void MenuButton::open() {
    if (m_menu || m_entries.isEmpty())
        return;
    const auto current = std::find_if(m_entries.cbegin(), m_entries.cend(),
        [this](const MenuEntry& entry) { return entry.checked || entry.title == title(); });
    const int selected = current == m_entries.cend() ? -1 : int(current - m_entries.cbegin());
    m_menu = PopupMenu::open(this, rect(), m_entries, selected, m_alignment);
    m_menu->setAccessibleName(accessibleName());
    connect(m_menu, &PopupMenu::chosen, this, &MenuButton::chosen);
    connect(m_menu, &PopupMenu::closed, this, [this] {
        m_menu = nullptr;
        setDown(false);
    });
    setDown(true);
}

void MenuButton::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && hitButton(event->position().toPoint()))
        open();
}

void MenuButton::mouseMoveEvent(QMouseEvent* event) {
    if (m_menu)
        m_menu->dragTo(event->globalPosition().toPoint());
}

void MenuButton::mouseReleaseEvent(QMouseEvent* event) {
    if (m_menu && !rect().contains(event->position().toPoint()))
        m_menu->releaseAt(event->globalPosition().toPoint());
}

void MenuButton::keyPressEvent(QKeyEvent* event) {
    if (isLive() && (event->key() == Qt::Key_Down || event->key() == Qt::Key_Up)) {
        open();
        return;
    }
    Control::keyPressEvent(event);
}

void MenuButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!isEnabled())
        painter.setOpacity(0.4);
    const QRectF area = rect();
    paintFill(painter, area, radius::control, color(m_isPicker ? ColorRole::button : ColorRole::control));
    paintStateOverlay(painter, area, radius::control, Ground::neutral);
    if (!showsFocusRing()) {
        paintEdge(painter, area, radius::control, 1,
            color(m_isPicker ? ColorRole::buttonEdge : ColorRole::hairline));
    }
    paintFocusRing(painter, area, radius::control, Ground::neutral);

    QRectF content = area.adjusted(buttonPadding, 0, -(m_isPicker ? pickerEndPadding : buttonPadding), 0);
    if (const Icon icon{.name = m_iconName, .pointSize = 10}; !icon.isNull()) {
        paintIcon(
            painter, QRectF(content.left(), 0, icon.box(), height()), icon, color(ColorRole::accentIcon));
        content.setLeft(content.left() + icon.box() + buttonGap);
    }
    const int box = chevron().box();
    paintIcon(
        painter, QRectF(content.right() - box, 0, box, height()), chevron(), color(ColorRole::secondary));
    content.setRight(content.right() - box - buttonGap);
    paintText(painter, content, m_style, color(ColorRole::text), title());
}

}  // namespace tralio
