#pragma once

#include "programs/recogniser/reading/reading.h"

namespace tralio {

/// The confidence from which a reading is text rather than signs that an engine makes of something else.
constexpr double textFrom = 50;

/// Whether a line has been read too well to be dirt, a drawing or a pattern.
[[nodiscard]] bool isText(const ReadLine& line, bool isInPhotograph);

}  // namespace tralio
