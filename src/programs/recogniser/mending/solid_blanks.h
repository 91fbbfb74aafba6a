#pragma once

#include <vector>

#include "programs/recogniser/lines/text_lines.h"
#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// Writes the blanks of lines that are nothing but Chinese or Japanese signs, such as that between two names.
/// Engines lose them: such text has none as a rule. The signs have one pitch, which a blank breaks.
void writeBlanksBetweenSigns(Reading& reading, const std::vector<TextLine>& lines);

}  // namespace tralio
