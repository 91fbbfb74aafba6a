#include "programs/snip/label_placement.h"

#include <algorithm>
#include <array>

namespace tralio {
namespace {

constexpr double hintMargin = 40;  // logical pixels: clear of most panels, and of the last line of subtitles

/// Where a span of `length` begins that lies after or before `place`.
int beside(int place, int length, int gap, bool after) {
    return after ? place + gap : place - gap - length + 1;
}

bool coversCorner(const QRect& label, const QRect& area, int gap) {
    const QRect kept = label.adjusted(1 - gap, 1 - gap, gap - 1, gap - 1);
    return kept.contains(area.topLeft()) || kept.contains(area.topRight()) ||
        kept.contains(area.bottomLeft()) || kept.contains(area.bottomRight());
}

}  // namespace

QRect placeSizeLabel(QSize label, const QRect& area, QPoint activeCorner, const QRect& monitor, int gap) {
    const bool isRight = activeCorner.x() == area.right();
    const bool isBottom = activeCorner.y() == area.bottom();
    const int outerX = beside(activeCorner.x(), label.width(), gap, isRight);
    const int innerX = beside(activeCorner.x(), label.width(), gap, !isRight);
    const int outerY = beside(activeCorner.y(), label.height(), gap, isBottom);
    const int innerY = beside(activeCorner.y(), label.height(), gap, !isBottom);
    // For rectangles smaller than the label in a corner of the monitor.
    const int anyX =
        std::clamp(innerX, monitor.left(), std::max(monitor.left(), monitor.right() - label.width() + 1));
    const int anyY =
        std::clamp(innerY, monitor.top(), std::max(monitor.top(), monitor.bottom() - label.height() + 1));

    const std::array candidates{
        QPoint(outerX, outerY),
        QPoint(innerX, outerY),
        QPoint(outerX, innerY),
        QPoint(innerX, innerY),
        QPoint(anyX, beside(area.top(), label.height(), gap, false)),
        QPoint(anyX, beside(area.bottom(), label.height(), gap, true)),
        QPoint(beside(area.left(), label.width(), gap, false), anyY),
        QPoint(beside(area.right(), label.width(), gap, true), anyY),
    };
    const auto found = std::find_if(candidates.begin(), candidates.end(), [&](QPoint place) {
        const QRect rectangle(place, label);
        return monitor.contains(rectangle) && !coversCorner(rectangle, area, gap);
    });
    return {found != candidates.end() ? *found : QPoint(anyX, anyY), label};
}

QRect placeHint(QSize hint, const Monitor& monitor) {
    QRect place(QPoint(), hint);
    place.moveCenter(monitor.area.center());
    place.moveBottom(monitor.area.bottom() - monitor.pixels(hintMargin));
    return place;
}

}  // namespace tralio
