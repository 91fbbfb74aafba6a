#pragma once

#include "programs/recogniser/pixels/plane.h"

namespace tralio {

/// Each pixel's median over the window that reaches `radiusX` and `radiusY` pixels to its sides, as far as
/// the picture goes. The time does not depend on the radii, which are at most 120.
[[nodiscard]] Plane windowMedian(const Plane& source, int radiusX, int radiusY);

}  // namespace tralio
