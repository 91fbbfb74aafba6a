#pragma once

#include "programs/recogniser/pixels/plane.h"

namespace tralio {

/// The picture at another size, interpolated by Catmull-Rom splines, which keep thin strokes crisp.
[[nodiscard]] Plane resample(const Plane& source, int width, int height);

/// The picture within a border of one value.
[[nodiscard]] Plane withBorder(const Plane& source, int border, quint8 value);

}  // namespace tralio
