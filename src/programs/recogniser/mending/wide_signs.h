#pragma once

#include <vector>

#include "programs/recogniser/lines/text_lines.h"
#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// Writes what stands behind Chinese and Japanese signs as it is drawn: marks as wide as those, which engines
/// take for narrow ones with a blank, and the blank before figures, which they lose.
void writeWideSigns(Reading& reading, const std::vector<TextLine>& lines);

}  // namespace tralio
