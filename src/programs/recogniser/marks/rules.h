#pragma once

#include <vector>

#include "programs/recogniser/pixels/labels.h"

namespace tralio {

/// Which of a picture's marks are lines, frames and tables' rules, or a text cursor: a text recogniser would
/// read them as letters. `unit` is the number of pixels of a logical one.
[[nodiscard]] std::vector<bool> findRules(const Labels& marks, const std::vector<Extent>& extents, int unit);

}  // namespace tralio
