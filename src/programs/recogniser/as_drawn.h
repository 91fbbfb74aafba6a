#pragma once

#include <vector>

#include "programs/recogniser/reading.h"
#include "programs/recogniser/text_lines.h"

namespace tralio {

/// Mends a reading by the marks of the lines that were read.
void writeAsDrawn(Reading& reading, const std::vector<TextLine>& lines);

}  // namespace tralio
