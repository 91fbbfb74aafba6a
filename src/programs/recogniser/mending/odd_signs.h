#pragma once

#include <vector>

#include "programs/recogniser/lines/text_blocks.h"
#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// Drops the drawings of a picture that were read as signs: one alone or before a text that is of a script
/// that the picture has none of, no such sign by its size, or no sign that a text begins with; and
/// punctuation where there is no mark.
void dropOddSigns(std::vector<ReadLine>& lines, const std::vector<TextBlock>& blocks);

}  // namespace tralio
