#pragma once

#include "programs/recogniser/plane.h"

namespace tralio {

/// Erases lines, frames and boxes from dark marks on white, which a text recogniser would read as letters.
/// `unit` is the number of pixels of a logical one.
void eraseRules(Plane& marks, int unit);

/// The usual height of small letters in dark marks on white, in pixels; 0 where there are too few to tell.
[[nodiscard]] int letterHeight(const Plane& marks);

}  // namespace tralio
