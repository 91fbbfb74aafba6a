#pragma once

#include "programs/recogniser/reading.h"
#include "programs/recogniser/text_lines.h"

namespace tralio {

/// The underlines of single letters, which mark the keys of menus.
void setKeyMarksAside(TextLine& line);

/// Joins words of which engines saw a blank where "_" stands; not in photographs, where marks are everywhere.
/// Boxes are in pixels of the image.
void restoreUnderscores(Reading& reading, const std::vector<TextLine>& lines);

}  // namespace tralio
