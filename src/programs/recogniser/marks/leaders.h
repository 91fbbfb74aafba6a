#pragma once

#include <vector>

#include "programs/recogniser/marks/mark_shapes.h"

namespace tralio {

/// Takes from small marks the dots that lead from one thing to another, as in a list of contents, or stand
/// where something is to be filled in: the rows of them.
[[nodiscard]] std::vector<std::vector<MarkShape>> takeLeaders(std::vector<MarkShape>& dots);

}  // namespace tralio
