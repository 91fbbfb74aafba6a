#pragma once

#include <vector>

#include "programs/recogniser/lines/text_lines.h"

namespace tralio {

/// Sets aside what stands in a row with drawings like it: before the labels of tabs and buttons, or alone
/// as in toolbars and title bars. So it does with what stands in a column with them, in several pieces.
void setIconRowsAside(std::vector<TextLine>& lines, const std::vector<QRect>& drawings, int unit);

}  // namespace tralio
