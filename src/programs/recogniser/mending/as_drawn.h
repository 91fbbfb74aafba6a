#pragma once

#include <vector>

#include "programs/recogniser/lines/text_blocks.h"
#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// Mends a reading by the marks of the lines that were read.
void writeAsDrawn(Reading& reading, const std::vector<TextLine>& lines, const BlockPicture& picture);

}  // namespace tralio
