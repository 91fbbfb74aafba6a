#pragma once

#include <vector>

#include "programs/recogniser/lines/text_lines.h"
#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// Tells the letters that are hardly more than an upright stroke from what engines take them for, by the
/// marks of the lines that were read.
void mendThinLetters(Reading& reading, const std::vector<TextLine>& lines);

}  // namespace tralio
