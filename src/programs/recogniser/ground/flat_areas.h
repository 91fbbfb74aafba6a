#pragma once

#include "programs/recogniser/pixels/colour_planes.h"
#include "programs/recogniser/pixels/labels.h"

namespace tralio {

/// The areas of even or softly changing colour that text may stand on: pages, cards, bands, bubbles, buttons,
/// cells. Letters are even too, but neither thick nor full bars, or there are others beside them. All other
/// pixels are in no area.
struct FlatAreas {
    Labels labels;
    std::vector<QRect> boxes;
    std::vector<bool> areBars;  ///< of a shape that somebody drew, other than patches of a photograph
};

/// `unit` is the number of pixels of a logical one.
[[nodiscard]] FlatAreas findFlatAreas(const Channels& channels, int unit);

}  // namespace tralio
