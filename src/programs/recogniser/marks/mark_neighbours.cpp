#include "programs/recogniser/marks/mark_neighbours.h"

#include <algorithm>
#include <cstdlib>

#include "programs/recogniser/pixels/boxes.h"

namespace tralio {
namespace {

/// As the frame of a field.
bool isHollow(const Extent& mark) {
    return mark.box.width() > 2 * mark.box.height() &&
        mark.area * qint64(8) < mark.box.width() * qint64(mark.box.height());
}

}  // namespace

MarkNeighbours::MarkNeighbours(const std::vector<Extent>& marks, int unit) : m_all(marks), m_unit(unit) {
    for (size_t i = 0; i < m_all.size(); ++i)
        m_places.add(i, m_all[i].box);
}

std::vector<size_t> MarkNeighbours::at(const QRect& place) const {
    std::vector<size_t> found;
    m_places.visit(place, [&](size_t i) {
        if (m_all[i].box.intersects(place))
            found.push_back(i);
    });
    std::ranges::sort(found);
    return found;
}

std::vector<size_t> MarkNeighbours::within(const QRect& place) const {
    std::vector<size_t> found = at(place);
    std::erase_if(found, [&](size_t i) { return !place.contains(m_all[i].box); });
    return found;
}

bool MarkNeighbours::isApart(size_t mark, double widths) const {
    const QRect& box = m_all[mark].box;
    const int reach = static_cast<int>(widths * box.width()) + 1;
    return !holdsAny(box.adjusted(-reach, 0, reach, 0), [&](const Extent& other) {
        const int gap = horizontalGap(other.box, box);
        return shareRow(other.box, box) && gap >= 0 && gap < widths * box.width();
    });
}

bool MarkNeighbours::isAlone(size_t mark) const {
    const QRect& box = m_all[mark].box;
    const int beside = box.width();
    const int over = box.height() / 2;
    return !holdsAny(box.adjusted(-beside, -over, beside, over), [&](const Extent& other) {
        return &other != &m_all[mark] && other.box.height() * 2 >= box.height() &&
            other.box.height() <= 3 * box.height() &&
            (horizontalGap(other.box, box) >= 0 ? shareRow(other.box, box)
                                                : !other.box.contains(box) && !box.contains(other.box)) &&
            horizontalGap(other.box, box) < beside && -sharedHeight(other.box, box) < over;
    });
}

bool MarkNeighbours::isInside(size_t mark) const {
    const QRect& box = m_all[mark].box;
    return holdsAny(box, [&](const Extent& other) {
        return &other != &m_all[mark] && other.box.contains(box) && other.box.height() <= 3 * box.height();
    });
}

bool MarkNeighbours::isAccent(size_t mark) const {
    const QRect& box = m_all[mark].box;
    return holdsAny(box.adjusted(0, 0, 0, 2 * box.height()), [&](const Extent& other) {
        const int below = other.box.top() - box.bottom();
        return horizontalGap(other.box, box) < 0 && below > 0 && below <= 2 * box.height() &&
            other.box.height() * 5 >= box.height() * 6 && other.box.height() <= 8 * box.height();
    });
}

bool MarkNeighbours::isBesideLarge(size_t mark) const {
    const QRect& box = m_all[mark].box;
    const int reach = 2 * std::max(box.width(), box.height());
    const int beyond = reach + 1;
    return holdsAny(box.adjusted(-beyond, -beyond, beyond, beyond), [&](const Extent& other) {
        return other.box.height() * 2 >= 3 * box.height() && other.box.height() <= 8 * box.height() &&
            !isHollow(other) && !other.box.contains(box) && horizontalGap(other.box, box) <= reach &&
            -sharedHeight(other.box, box) <= reach;
    });
}

bool MarkNeighbours::isBesideAlike(size_t mark) const {
    const QRect& box = m_all[mark].box;
    const int reach = box.height();
    return holdsAny(box.adjusted(-reach, -m_unit, reach, m_unit), [&](const Extent& other) {
        const int gap = horizontalGap(other.box, box);
        return gap >= 0 && gap < box.height() && std::abs(other.box.top() - box.top()) <= m_unit &&
            std::abs(other.box.bottom() - box.bottom()) <= m_unit;
    });
}

bool MarkNeighbours::isFirst(size_t mark) const {
    const QRect& box = m_all[mark].box;
    return !holdsAny(box.adjusted(-box.height(), 0, 0, 0), [&](const Extent& other) {
        const int gap = box.left() - other.box.right();
        return gap >= 0 && gap < box.height() && shareRow(other.box, box) &&
            other.box.height() * 2 >= box.height() && other.box.height() <= 2 * box.height();
    });
}

}  // namespace tralio
