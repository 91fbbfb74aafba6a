#include "ui/kit/tab_strip.h"

#include <QEvent>

#include "ui/kit/control.h"
#include "ui/kit/icon.h"
#include "ui/kit/keyboard_use.h"
#include "ui/kit/painting.h"
#include "ui/kit/stack.h"
#include "ui/kit/theme.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int tabHeight = 24;
constexpr int tabPadding = 7;
constexpr int iconGap = 4;
constexpr int stripPadding = 3;
constexpr int tabGap = 2;
constexpr int tabTime = 150;  // milliseconds
constexpr TextStyle plain = text::caption;
constexpr TextStyle selectedStyle = text::caption.with(Weight::semibold);

}  // namespace

class TabStrip::Tab final : public Control {
public:
    Tab(const TabItem& item, TabStrip& strip)
        : Control(item.label, &strip), m_strip(strip), m_icon{.name = item.iconName, .pointSize = 11} {
        setCheckable(true);
        setAutoExclusive(true);
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    }

    /// Reserves the width of the semibold label, so that the strip does not change its size with the
    /// selection.
    [[nodiscard]] QSize sizeHint() const override {
        return {2 * tabPadding + m_icon.box() + iconGap + textWidth(selectedStyle, title()), tabHeight};
    }

    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::PageTab; }
    [[nodiscard]] QAccessible::State spokenState(QAccessible::State state) const override {
        state = Control::spokenState(state);
        state.selectable = true;
        state.selected = isChecked();
        return state;
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QRectF area = rect();
        const Ground ground = isChecked() ? Ground::solid : Ground::neutral;
        if (!isChecked())
            paintStateOverlay(painter, area, radius::control, ground);
        // The label is white exactly where the sliding shape covers it.
        const QRectF shape = m_strip.m_shape.translated(-QPointF(pos()));
        const QRegion covered = QRegion(rect()) & shape.toAlignedRect();
        painter.setClipRegion(QRegion(rect()) - covered);
        paintLabel(painter, plain, color(ColorRole::text));
        painter.setClipRegion(covered);
        paintLabel(painter, selectedStyle, color(ColorRole::onFill));
        painter.setClipping(false);
        paintFocusRing(painter, area, radius::control, ground);
    }

private:
    void paintLabel(QPainter& painter, const TextStyle& style, const QColor& ink) const {
        const int content = m_icon.box() + iconGap + textWidth(style, title());
        const int left = (width() - content) / 2;
        paintIcon(painter, QRect(left, 0, m_icon.box(), height()), m_icon, ink);
        paintText(painter, rect().adjusted(left + m_icon.box() + iconGap, 0, 0, 0), style, ink, title());
    }

    TabStrip& m_strip;
    Icon m_icon;
};

TabStrip::TabStrip(const QList<TabItem>& tabs, QWidget* parent) : QWidget(parent) {
    setAccessibleName(u"Các mục của Tralio"_s);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* layout =
        row({.spacing = tabGap, .padding = {stripPadding, stripPadding, stripPadding, stripPadding}}, {});
    for (const TabItem& item : tabs) {
        auto* tab = new Tab(item, *this);
        const int index = int(m_tabs.size());
        connect(tab, &Control::clicked, this, [this, index] {
            if (index != m_current) {
                const QWidget* focus = window()->focusWidget();
                const bool isWalked =
                    focus != nullptr && isAncestorOf(focus) && isKeyboardFocus(Qt::TabFocusReason);
                setCurrent(index);
                m_isWalked = isWalked;
                Q_EMIT selected(index);
            }
        });
        layout->addWidget(tab);
        m_tabs.append(tab);
    }
    setLayout(layout);
    if (!m_tabs.isEmpty())
        check(0);
    m_slide.setEasingCurve(QEasingCurve::InOutQuad);
    connect(&m_slide, &QVariantAnimation::valueChanged, this,
        [this](const QVariant& value) { setShape(value.toRectF()); });
}

void TabStrip::check(int index) {
    m_tabs.at(index)->setChecked(true);
    // One Tab stop. WORKAROUND: Qt (6.4 and 6.8) does the same by itself only after one of the tabs has had
    // the focus.
    for (int i = 0; i < m_tabs.size(); ++i)
        m_tabs.at(i)->setFocusPolicy(i == index ? Qt::TabFocus : Qt::NoFocus);
}

void TabStrip::setCurrent(int index) {
    check(index);
    if (index != m_current) {
        m_isWalked = false;  // the selection is changed from elsewhere in the window, or by another program
        m_current = index;
        slideTo(index);
    }
}

void TabStrip::slideTo(int index) {
    const QRectF target = m_tabs.at(index)->geometry();
    const int duration = Theme::current().duration(tabTime);
    m_slide.stop();
    if (duration == 0 || !isVisible()) {
        setShape(target);
        return;
    }
    m_slide.setDuration(duration);
    m_slide.setStartValue(m_shape);
    m_slide.setEndValue(target);
    m_slide.start();
}

void TabStrip::setShape(const QRectF& shape) {
    m_shape = shape;
    update();
}

bool TabStrip::isWalked(const QWidget& window) {
    const QWidget* focus = window.focusWidget();
    const auto* strip = focus != nullptr ? qobject_cast<const TabStrip*>(focus->parentWidget()) : nullptr;
    return strip != nullptr && strip->m_isWalked;
}

void TabStrip::hideEvent(QHideEvent* event) {
    m_isWalked = false;
    QWidget::hideEvent(event);
}

void TabStrip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintFill(painter, rect(), radius::block, color(ColorRole::tabStrip));
    paintEdge(painter, rect(), radius::block, 1, color(ColorRole::hairline));
    paintFill(painter, m_shape, radius::control, color(ColorRole::accentFill));
}

void TabStrip::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layout()->activate();
    m_slide.stop();
    if (!m_tabs.isEmpty())
        setShape(m_tabs.at(m_current)->geometry());
}

}  // namespace tralio
