#pragma once

#include <vector>

#include "programs/recogniser/marks/text_marks.h"
#include "programs/recogniser/pixels/labels.h"

namespace tralio {

/// Which marks on flat areas are no signs of a text but small drawings: arrowheads, ticks and the boxes for
/// them, crosses that close something, discs, switches, and icons of other colours than the text beside them.
[[nodiscard]] std::vector<bool> findDrawings(
    const Labels& ink, const std::vector<Extent>& extents, const TextMarks& marks);

}  // namespace tralio
