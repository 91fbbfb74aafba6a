#pragma once

#include <vector>

#include "programs/recogniser/lines/text_lines.h"

namespace tralio {

/// Sets aside what stands in one column before the lines of a menu or a list, if some of it is no letter.
void setIconColumnsAside(std::vector<TextLine>& lines, const std::vector<QRect>& drawings, int unit);

}  // namespace tralio
