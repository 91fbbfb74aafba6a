#pragma once

#include <vector>

#include "programs/recogniser/reading.h"
#include "programs/recogniser/text_lines.h"

namespace tralio {

/// Whether it is an amount with the sign of a currency, or that sign.
[[nodiscard]] bool isPrice(const QString& text);

/// Mends what engines take for signs that look like digits or stand beside them, by the marks of the lines
/// that were read: "ó" for "6", "\" for "¥", the comma between digits for a point.
void mendFigures(Reading& reading, const std::vector<TextLine>& lines);

}  // namespace tralio
