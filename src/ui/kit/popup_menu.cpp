#include "ui/kit/popup_menu.h"

#include <QKeyEvent>

#include <algorithm>

#include "ui/kit/control.h"
#include "ui/kit/icon.h"
#include "ui/kit/keyboard_use.h"
#include "ui/kit/painting.h"
#include "ui/kit/shadow.h"
#include "ui/kit/theme.h"

using namespace Qt::StringLiterals;

namespace tralio {
namespace {

constexpr int itemHeight = 26;
constexpr int itemPadding = 8;
constexpr int menuPadding = 4;
constexpr int menuDistance = 4;  // between the button and its menu
constexpr int menuInset = 4;
constexpr int checkRoom = 12 + 16;
constexpr int leastWidth = 148;
constexpr TextStyle itemStyle = text::menuItem;

}  // namespace

class PopupMenu::Item final : public Control {
public:
    Item(const MenuEntry& entry, PopupMenu& menu) : Control(entry.title, &menu), m_menu(menu) {
        setCheckable(entry.checked);
        setChecked(entry.checked);
        setEnabled(entry.enabled);
        setFocusPolicy(Qt::NoFocus);  // the menu sets the focus itself
    }

    [[nodiscard]] QSize sizeHint() const override {
        return {2 * itemPadding + textWidth(itemStyle, title()) + checkRoom, itemHeight};
    }

    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::MenuItem; }

protected:
    void enterEvent(QEnterEvent*) override {
        if (isEnabled())
            m_menu.mark(this);
    }

    void keyPressEvent(QKeyEvent* event) override { m_menu.keyPressEvent(event); }

    // Choosing an entry changes the setting, and with it the check mark, which must not toggle by itself.
    void nextCheckState() override {}

    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const bool marked = m_menu.m_marked == this;
        if (marked)
            paintFill(painter, rect(), radius::small, color(ColorRole::accentFill));
        if (!isEnabled())
            painter.setOpacity(0.4);
        const QColor ink = color(marked ? ColorRole::onFill : ColorRole::text);
        const QRect content = rect().adjusted(itemPadding, 0, -itemPadding, 0);
        paintText(painter, content, itemStyle, ink, title());
        if (isChecked()) {
            const Icon check{.name = u"checkmark"_s, .pointSize = 10};
            paintIcon(
                painter, QRect(content.right() + 1 - check.box(), 0, check.box(), height()), check, ink);
        }
    }

private:
    PopupMenu& m_menu;
};

PopupMenu* PopupMenu::open(QWidget* owner, const QRect& anchor, const QList<MenuEntry>& entries, int selected,
    Qt::Alignment alignment) {
    auto* menu = new PopupMenu(owner, anchor, entries, alignment);
    menu->show();
    menu->raise();
    menu->setFocus(Qt::PopupFocusReason);
    if (selected >= 0 && selected < menu->m_items.size())
        menu->mark(menu->m_items.at(selected));
    return menu;
}

PopupMenu::PopupMenu(
    QWidget* owner, const QRect& anchor, const QList<MenuEntry>& entries, Qt::Alignment alignment)
    : QWidget(owner->window()), m_formerFocus(owner->window()->focusWidget()) {
    setFocusPolicy(Qt::StrongFocus);
    setGeometry(parentWidget()->rect());
    parentWidget()->installEventFilter(this);
    // A panel may be hidden or deleted while its menu is open.
    owner->installEventFilter(this);
    connect(owner, &QObject::destroyed, this, &PopupMenu::closeWithOwner);

    int width = leastWidth - 2 * menuPadding;
    for (const MenuEntry& entry : entries) {
        auto* item = new Item(entry, *this);
        connect(item, &Control::clicked, this, [this, index = int(m_items.size())] { choose(index); });
        width = std::max(width, item->sizeHint().width());
        m_items.append(item);
    }
    const QSize size(std::max(width + 2 * menuPadding, anchor.width()),
        int(m_items.size()) * itemHeight + 2 * menuPadding);
    m_panel = place(QRect(owner->mapTo(owner->window(), anchor.topLeft()), anchor.size()), size, alignment);
    QRect line(m_panel.left() + menuPadding, m_panel.top() + menuPadding, size.width() - 2 * menuPadding,
        itemHeight);
    for (Item* item : std::as_const(m_items)) {
        item->setGeometry(line);
        line.translate(0, itemHeight);
    }
}

QRect PopupMenu::place(const QRect& anchor, const QSize& size, Qt::Alignment alignment) const {
    QRect panel(QPoint(alignment & Qt::AlignRight ? anchor.right() + 1 - size.width() : anchor.left(),
                    anchor.bottom() + 1 + menuDistance),
        size);
    const QRect room = rect().adjusted(menuInset, menuInset, -menuInset, -menuInset);
    if (panel.bottom() > room.bottom() && anchor.top() - menuDistance - size.height() >= room.top())
        panel.moveBottom(anchor.top() - 1 - menuDistance);
    panel.moveTop(std::max(room.top(), std::min(panel.top(), room.bottom() + 1 - size.height())));
    panel.moveLeft(std::max(room.left(), std::min(panel.left(), room.right() + 1 - size.width())));
    return panel;
}

PopupMenu::Item* PopupMenu::itemAt(const QPoint& globalPosition) const {
    for (Item* item : m_items)
        if (item->isEnabled() && item->rect().contains(item->mapFromGlobal(globalPosition)))
            return item;
    return nullptr;
}

void PopupMenu::mark(Item* item) {
    m_marked = item;
    if (item != nullptr)
        item->setFocus(Qt::PopupFocusReason);  // screen readers follow the focus
    update();
}

void PopupMenu::move(int from, int step) {
    for (int i = from; i >= 0 && i < m_items.size(); i += step) {
        if (m_items.at(i)->isEnabled()) {
            mark(m_items.at(i));
            return;
        }
    }
}

void PopupMenu::choose(int index) {
    const QPointer<PopupMenu> self(this);
    close();
    if (self)
        Q_EMIT chosen(index);
}

void PopupMenu::close() {
    if (m_closing)
        return;
    m_closing = true;
    if (m_formerFocus && m_formerFocus->isVisible())
        m_formerFocus->setFocus(Qt::PopupFocusReason);
    hide();
    deleteLater();
    Q_EMIT closed();
}

void PopupMenu::closeWithOwner() {
    m_formerFocus = nullptr;
    close();
}

void PopupMenu::dragTo(const QPoint& globalPosition) {
    mark(itemAt(globalPosition));
}

void PopupMenu::releaseAt(const QPoint& globalPosition) {
    if (Item* item = itemAt(globalPosition))
        choose(int(m_items.indexOf(item)));
}

bool PopupMenu::event(QEvent* event) {
    // While the menu is open, Escape closes it, even if the window has a shortcut for Escape.
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void PopupMenu::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintShadow(painter, m_panel, radius::block, shadow::menu);
    paintFill(painter, m_panel, radius::block, color(ColorRole::menu));
    paintEdge(painter, m_panel.adjusted(-1, -1, 1, 1), radius::block + 1, 1, color(ColorRole::windowEdge));
}

void PopupMenu::mousePressEvent(QMouseEvent* event) {
    if (!m_panel.contains(event->position().toPoint()))
        close();
}

void PopupMenu::keyPressEvent(QKeyEvent* event) {
    const int at = m_marked ? int(m_items.indexOf(m_marked)) : -1;
    switch (event->key()) {
        case Qt::Key_Down:
            move(at + 1, 1);
            break;
        case Qt::Key_Up:
            move(at < 0 ? int(m_items.size()) - 1 : at - 1, -1);
            break;
        case Qt::Key_Home:
            move(0, 1);
            break;
        case Qt::Key_End:
            move(int(m_items.size()) - 1, -1);
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            if (m_marked && !isRepeat(*event))  // not a repeat of the press that opened the menu
                choose(at);
            break;
        case Qt::Key_Escape:
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            close();
            break;
        default:
            break;
    }
}

void PopupMenu::hideEvent(QHideEvent* event) {
    close();
    QWidget::hideEvent(event);
}

bool PopupMenu::eventFilter(QObject* watched, QEvent* event) {
    const bool isWindow = watched == parentWidget();
    if (isWindow ? event->type() == QEvent::Resize || event->type() == QEvent::WindowDeactivate
                 : event->type() == QEvent::Hide)
        close();
    return QWidget::eventFilter(watched, event);
}

}  // namespace tralio
