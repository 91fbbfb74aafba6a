#pragma once

#include <vector>

#include "programs/recogniser/marks/mark_shapes.h"
#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// Adds the dashes that are all that a cell of a table has, which are too low to be a line of text: those
/// beside others of its row that stand under one another with others of its column.
void addLoneDashes(std::vector<ReadLine>& lines, const std::vector<MarkShape>& shapes, int unit);

}  // namespace tralio
