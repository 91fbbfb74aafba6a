#pragma once

#include <vector>

#include "programs/recogniser/lines/text_lines.h"

namespace tralio {

/// Of the lines seen in a photograph, those whose letters are as even in height as those of a text; what it
/// shows by chance is not. A line that was seen in several kinds of marks comes once.
[[nodiscard]] std::vector<TextLine> evenLines(std::vector<TextLine> sightings);

}  // namespace tralio
