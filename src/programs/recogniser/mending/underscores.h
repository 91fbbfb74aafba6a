#pragma once

#include "programs/recogniser/lines/text_lines.h"
#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// Joins words of which engines saw a blank where "_" stands; not in photographs, where marks are everywhere.
/// Boxes are in pixels of the image.
void restoreUnderscores(Reading& reading, const std::vector<TextLine>& lines);

}  // namespace tralio
