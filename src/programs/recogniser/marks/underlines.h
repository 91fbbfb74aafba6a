#pragma once

#include <vector>

#include "programs/recogniser/pixels/labels.h"

namespace tralio {

/// The pixels of lines and squiggles beneath words, of those marks in which letters touch them, without what
/// is the letters'. Empty where there is none.
[[nodiscard]] std::vector<bool> findUnderlines(const Labels& marks, int unit);

}  // namespace tralio
