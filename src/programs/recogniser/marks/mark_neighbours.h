#pragma once

#include <vector>

#include "programs/recogniser/pixels/labels.h"
#include "programs/recogniser/pixels/place_index.h"

namespace tralio {

/// What stands around each of many marks.
class MarkNeighbours final {
public:
    /// The marks outlive it.
    MarkNeighbours(const std::vector<Extent>& marks, int unit);

    /// Those that meet a place, in their order.
    [[nodiscard]] std::vector<size_t> at(const QRect& place) const;

    /// Those that lie in a place.
    [[nodiscard]] std::vector<size_t> within(const QRect& place) const;

    /// Whether nothing stands beside it nearer than that share of its width.
    [[nodiscard]] bool isApart(size_t mark, double widths) const;

    /// Whether nothing stands beside it nearer than its width, nor above or below it nearer than half its
    /// height, but for what is much smaller or larger.
    [[nodiscard]] bool isAlone(size_t mark) const;

    /// Whether it is a part of a sign, as the inner box of "回".
    [[nodiscard]] bool isInside(size_t mark) const;

    /// Whether a letter stands beneath it.
    [[nodiscard]] bool isAccent(size_t mark) const;

    /// Whether it may be a dot of a letter that is that much larger.
    [[nodiscard]] bool isBesideLarge(size_t mark) const;

    /// Whether it may be a letter of a word.
    [[nodiscard]] bool isBesideAlike(size_t mark) const;

    /// Whether nothing that it could belong to stands before it.
    [[nodiscard]] bool isFirst(size_t mark) const;

private:
    template <typename Condition>
    [[nodiscard]] bool holdsAny(const QRect& place, Condition condition) const {
        bool isFound = false;
        m_places.visit(place, [&](size_t i) { isFound = isFound || condition(m_all[i]); });
        return isFound;
    }

    const std::vector<Extent>& m_all;
    int m_unit;
    PlaceIndex m_places;
};

}  // namespace tralio
