#pragma once

#include <vector>

#include "programs/recogniser/lines/text_lines.h"
#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// Mends what engines take for signs that look like digits or stand beside them, by the marks of the lines
/// that were read: "ó" for "6", "\" for "¥", the comma between digits for a point.
void mendFigures(Reading& reading, const std::vector<TextLine>& lines);

}  // namespace tralio
