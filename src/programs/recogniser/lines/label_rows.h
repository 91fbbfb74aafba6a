#pragma once

#include "programs/recogniser/lines/text_lines.h"

namespace tralio {

/// Cuts rows of labels, as menus and tabs are, into lines of their own.
void cutLabelRows(std::vector<TextLine>& lines);

}  // namespace tralio
