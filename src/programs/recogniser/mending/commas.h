#pragma once

#include <vector>

#include "programs/recogniser/lines/text_lines.h"
#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// Writes the blanks behind commas that are drawn, where engines join what stands around them.
void writeBlanksBehindCommas(Reading& reading, const std::vector<TextLine>& lines);

}  // namespace tralio
