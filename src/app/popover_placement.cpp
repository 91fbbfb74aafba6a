#include "app/popover_placement.h"

#include <algorithm>

namespace tralio {
namespace {

constexpr int gap = 6;
constexpr int leastHeight = 400;

}  // namespace

QRect popoverPlace(const QSize& size, const QRect& available, std::optional<QRect> anchor) {
    QRect place(QPoint(), size);
    if (!anchor) {
        place.moveTopRight(available.topRight());
    } else {
        place.moveCenter(anchor->center());
        if (anchor->center().y() <= available.center().y())
            place.moveTop(anchor->bottom() + 1 + gap);
        else
            place.moveBottom(anchor->top() - 1 - gap);
    }
    // On a screen smaller than the popover, its top left corner stays visible.
    const QRect room = available.marginsRemoved({gap, gap, gap, gap});
    place.moveLeft(std::max(std::min(place.left(), room.right() + 1 - size.width()), room.left()));
    place.moveTop(std::max(std::min(place.top(), room.bottom() + 1 - size.height()), room.top()));
    return place;
}

int popoverHeight(int wanted, const QRect& available) {
    return std::clamp(available.height() - 2 * gap, leastHeight, wanted);
}

}  // namespace tralio
