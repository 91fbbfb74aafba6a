#pragma once

#include <array>
#include <vector>

#include "programs/recogniser/pixels/colour_planes.h"
#include "programs/recogniser/pixels/labels.h"

namespace tralio {

using Colour = std::array<int, 3>;

/// Whether nobody sees a difference.
[[nodiscard]] bool areAlike(const Colour& a, const Colour& b);

/// Rows of a group: what they span from their first to their last pixel, and which are nearly full.
struct RowTally {
    int spans = 0;
    bool isFullAbove = false;  ///< in its upper third
    bool isFullBelow = false;
};

/// The groups of neighbours of nearly one colour, and what tells areas from letters and photographs. All
/// lists are by group.
struct EvenGroups {
    explicit EvenGroups(const Channels& channels);

    [[nodiscard]] size_t count() const { return extents.size(); }

    Labels labels;
    std::vector<Extent> extents;
    std::vector<int> squares;  ///< how thick each is
    std::vector<RowTally> rows;
    std::vector<Colour> colours;  ///< of a pixel of each
    /// Which were drawn: most of their neighbours beside or below one another are equal, also in a gradient.
    /// Where that is dithered its colours are at least on a straight line. A sky in a photograph changes all
    /// the time, however softly.
    std::vector<bool> areDrawn;
};

}  // namespace tralio
