#include "programs/snip/region_selection.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace tralio {
namespace {

constexpr Qt::Edges allEdges = Qt::LeftEdge | Qt::TopEdge | Qt::RightEdge | Qt::BottomEdge;

// Logical pixels.
constexpr double shortestDrag = 4;
constexpr double reachOfEdge = 7;
constexpr QSize placedSize{360, 120};
constexpr double smallestPlacedSide = 8;

/// The rectangle, moved as little as necessary to lie within `bounds`, which is at least as large.
QRect movedInto(const QRect& bounds, QRect area) {
    area.moveLeft(std::clamp(area.left(), bounds.left(), bounds.right() - area.width() + 1));
    area.moveTop(std::clamp(area.top(), bounds.top(), bounds.bottom() - area.height() + 1));
    return area;
}

/// The rectangle from one pixel to another, both included.
QRect spanned(QPoint one, QPoint other) {
    return {QPoint(std::min(one.x(), other.x()), std::min(one.y(), other.y())),
        QPoint(std::max(one.x(), other.x()), std::max(one.y(), other.y()))};
}

}  // namespace

RegionSelection::RegionSelection(MonitorLayout monitors, QPoint pointer)
    : m_monitors(std::move(monitors)), m_pointer(pointer) {}

void RegionSelection::press(QPoint place) {
    if (m_stage != Stage::Waiting && m_stage != Stage::Placed)
        return;
    m_pointer = m_pressedAt = place;
    m_heldEdges = m_stage == Stage::Placed ? edgesAt(place) : Qt::Edges();
    if (m_heldEdges) {
        m_areaAtPress = m_area;
        m_stage = Stage::Adjusting;
        return;
    }
    m_area = m_areaAtPress = QRect(place, QSize(1, 1));
    m_heldEdges = Qt::RightEdge | Qt::BottomEdge;
    m_stage = Stage::Drawing;
}

void RegionSelection::moveTo(QPoint place) {
    if (isOver())
        return;
    m_pointer = place;
    if (m_stage == Stage::Drawing || m_stage == Stage::Adjusting)
        follow();
}

void RegionSelection::release(QPoint place) {
    moveTo(place);
    if (m_stage == Stage::Drawing)
        m_stage = isDrag() ? Stage::Confirmed : Stage::Cancelled;
    else if (m_stage == Stage::Adjusting)
        m_stage = Stage::Placed;
}

void RegionSelection::pressArrow(QPoint direction, ArrowEffect effect, Stride stride) {
    if (m_stage == Stage::Waiting)
        return place();
    if (m_stage != Stage::Placed)
        return;

    const Monitor& monitor = m_monitors.at(m_area.center());
    const QPoint step = direction * monitor.pixels(int(stride));
    if (effect == ArrowEffect::Move) {
        m_area = movedInto(m_monitors.bounds(), m_area.translated(step));
        return;
    }
    const QRect bounds = m_monitors.bounds();
    const int smallest = monitor.pixels(smallestPlacedSide) - 1;
    const QPoint corner = m_area.bottomRight() + step;
    m_area.setRight(
        std::clamp(corner.x(), std::min(m_area.left() + smallest, bounds.right()), bounds.right()));
    m_area.setBottom(
        std::clamp(corner.y(), std::min(m_area.top() + smallest, bounds.bottom()), bounds.bottom()));
}

void RegionSelection::confirm() {
    if (m_stage == Stage::Waiting)
        place();
    else if (m_stage == Stage::Placed)
        m_stage = Stage::Confirmed;
}

void RegionSelection::cancel() {
    if (!isOver())
        m_stage = Stage::Cancelled;
}

bool RegionSelection::isOver() const {
    return m_stage == Stage::Confirmed || m_stage == Stage::Cancelled;
}

std::optional<QRect> RegionSelection::area() const {
    const bool stands = m_stage == Stage::Placed || m_stage == Stage::Adjusting ||
        m_stage == Stage::Confirmed || (m_stage == Stage::Drawing && isDrag());
    return stands ? std::optional(m_area) : std::nullopt;
}

QPoint RegionSelection::activeCorner() const {
    if (m_stage != Stage::Drawing && m_stage != Stage::Adjusting)
        return m_area.bottomRight();
    const bool right = m_pointer.x() > m_area.center().x();
    const bool bottom = m_pointer.y() > m_area.center().y();
    return {right ? m_area.right() : m_area.left(), bottom ? m_area.bottom() : m_area.top()};
}

void RegionSelection::place() {
    const Monitor& monitor = m_monitors.at(m_pointer);
    const QSize size = QSize(monitor.pixels(placedSize.width()), monitor.pixels(placedSize.height()))
                           .boundedTo(monitor.area.size());
    QRect area(QPoint(), size);
    area.moveCenter(m_pointer);
    m_area = movedInto(monitor.area, area);
    m_stage = Stage::Placed;
}

void RegionSelection::follow() {
    const QPoint way = m_pointer - m_pressedAt;
    if (m_heldEdges == allEdges) {
        m_area = movedInto(m_monitors.bounds(), m_areaAtPress.translated(way));
        return;
    }
    QPoint topLeft = m_areaAtPress.topLeft();
    QPoint bottomRight = m_areaAtPress.bottomRight();
    if (m_heldEdges & Qt::LeftEdge)
        topLeft.rx() += way.x();
    if (m_heldEdges & Qt::TopEdge)
        topLeft.ry() += way.y();
    if (m_heldEdges & Qt::RightEdge)
        bottomRight.rx() += way.x();
    if (m_heldEdges & Qt::BottomEdge)
        bottomRight.ry() += way.y();
    m_area = spanned(topLeft, bottomRight) & m_monitors.bounds();
}

Qt::Edges RegionSelection::edgesAt(QPoint place) const {
    const int reach = m_monitors.at(place).pixels(reachOfEdge);
    if (!m_area.adjusted(-reach, -reach, reach, reach).contains(place))
        return {};
    // At most a quarter of the rectangle, or the middle of a small one could not be grabbed.
    const int across = std::min(reach, m_area.width() / 4);
    const int down = std::min(reach, m_area.height() / 4);
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, place.x() < m_area.left() + across);
    edges.setFlag(Qt::RightEdge, place.x() > m_area.right() - across);
    edges.setFlag(Qt::TopEdge, place.y() < m_area.top() + down);
    edges.setFlag(Qt::BottomEdge, place.y() > m_area.bottom() - down);
    return edges ? edges : allEdges;
}

bool RegionSelection::isDrag() const {
    const QPoint way = m_pointer - m_pressedAt;
    return std::max(std::abs(way.x()), std::abs(way.y())) >= m_monitors.at(m_pressedAt).pixels(shortestDrag);
}

}  // namespace tralio
