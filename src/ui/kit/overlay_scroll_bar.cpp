#include "ui/kit/overlay_scroll_bar.h"

#include <QAbstractScrollArea>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

#include "ui/kit/painting.h"
#include "ui/kit/theme.h"

namespace tralio {
namespace {

constexpr int barWidth = 12;  // the area that reacts to the pointer
constexpr int restWidth = 5;
constexpr int restInset = 4;
constexpr int activeWidth = 7;
constexpr int activeInset = 3;
constexpr int endInset = 3;
constexpr qreal leastLength = 28;

}  // namespace

OverlayScrollBar::OverlayScrollBar(QAbstractScrollArea* area)
    : QWidget(area), m_area(area), m_frame(area), m_bar(area->verticalScrollBar()) {
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setCursor(Qt::ArrowCursor);
    connect(m_bar, &QScrollBar::valueChanged, this, qOverload<>(&QWidget::update));
    connect(m_bar, &QScrollBar::rangeChanged, this, &OverlayScrollBar::place);
    area->installEventFilter(this);
    place();
}

void OverlayScrollBar::setFrame(QWidget* frame) {
    m_frame = frame;
    frame->installEventFilter(this);
    setParent(frame);
    place();
}

void OverlayScrollBar::place() {
    const bool inside = m_area == m_frame || m_frame->isAncestorOf(m_area);
    if (inside) {
        const QRect area(m_area->mapTo(m_frame.get(), QPoint()), m_area->size());
        setGeometry(m_frame->width() - barWidth, area.top(), barWidth, area.height());
    }
    setVisible(inside && m_bar->maximum() > m_bar->minimum());
    raise();
    update();
}

QRectF OverlayScrollBar::thumb() const {
    const int range = m_bar->maximum() - m_bar->minimum();
    if (range <= 0)
        return {};
    const qreal track = height() - 2 * endInset;
    const qreal length =
        std::min(track, std::max(leastLength, track * m_bar->pageStep() / (range + m_bar->pageStep())));
    const qreal top = endInset + (track - length) * (m_bar->value() - m_bar->minimum()) / range;
    const bool active = m_hovered || m_dragged;
    const int thickness = active ? activeWidth : restWidth;
    return {qreal(width() - thickness - (active ? activeInset : restInset)), top, qreal(thickness), length};
}

void OverlayScrollBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRectF area = thumb();
    const ColorRole role = m_dragged ? ColorRole::scrollThumbDragged
        : m_hovered                  ? ColorRole::scrollThumbHover
                                     : ColorRole::scrollThumb;
    paintFill(painter, area, std::min<qreal>(radius::tiny, area.width() / 2), color(role));
}

void OverlayScrollBar::enterEvent(QEnterEvent*) {
    m_hovered = true;
    update();
}

void OverlayScrollBar::leaveEvent(QEvent*) {
    m_hovered = false;
    update();
}

void OverlayScrollBar::mousePressEvent(QMouseEvent* event) {
    const QRectF area = thumb();
    const qreal y = event->position().y();
    if (y >= area.top() && y <= area.bottom()) {
        m_dragged = true;
        m_grip = y - area.top();
    } else {
        m_bar->triggerAction(
            y < area.top() ? QAbstractSlider::SliderPageStepSub : QAbstractSlider::SliderPageStepAdd);
    }
    update();
}

void OverlayScrollBar::mouseMoveEvent(QMouseEvent* event) {
    const qreal room = height() - 2 * endInset - thumb().height();
    if (m_dragged && room > 0) {
        const qreal share = (event->position().y() - m_grip - endInset) / room;
        m_bar->setValue(m_bar->minimum() + int(std::lround(share * (m_bar->maximum() - m_bar->minimum()))));
    }
}

void OverlayScrollBar::mouseReleaseEvent(QMouseEvent*) {
    m_dragged = false;
    update();
}

void OverlayScrollBar::wheelEvent(QWheelEvent* event) {
    // The wheel scrolls the content over the thumb, too.
    QCoreApplication::sendEvent(m_bar, event);
}

bool OverlayScrollBar::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move || event->type() == QEvent::Show)
        place();
    return QWidget::eventFilter(watched, event);
}

}  // namespace tralio
