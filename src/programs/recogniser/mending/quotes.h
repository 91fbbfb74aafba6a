#pragma once

#include <vector>

#include "programs/recogniser/lines/text_blocks.h"
#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// Writes apostrophes and quotation marks straight or curly, as they are drawn.
void tellQuotes(Reading& reading, const std::vector<TextLine>& lines, const BlockPicture& picture);

}  // namespace tralio
