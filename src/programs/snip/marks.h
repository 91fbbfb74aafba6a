#pragma once

#include <QImage>

namespace tralio {

/// The cross under the pointer; its middle is at half its size, rounded down.
[[nodiscard]] QImage drawCross(double scale);

/// A bright dot for the corners and sides of the rectangle.
[[nodiscard]] QImage drawHandle(double scale);

}  // namespace tralio
