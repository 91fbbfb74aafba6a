#pragma once

#include "programs/recogniser/reading.h"

namespace tralio {

/// Whether a line has been read too well to be dirt, a drawing or a pattern.
[[nodiscard]] bool isText(const ReadLine& line, bool isInPhotograph);

}  // namespace tralio
