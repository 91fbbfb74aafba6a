#pragma once

#include <vector>

#include "programs/recogniser/lines/text_blocks.h"
#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// Writes the dot, acute or grave above a letter that has just one mark there as it is drawn.
void tellAccents(Reading& reading, const std::vector<TextLine>& lines, const BlockPicture& picture);

}  // namespace tralio
