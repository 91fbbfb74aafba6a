#pragma once

#include <vector>

#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// Adds the lines of another block. Where a soft ground falls into several regions, a line is found in each,
/// with some of its letters: of two that stand in one place, the one with more that is surely read stays.
void addBetterLines(std::vector<ReadLine>& lines, std::vector<ReadLine> further);

}  // namespace tralio
