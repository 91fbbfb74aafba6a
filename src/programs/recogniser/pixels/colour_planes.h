#pragma once

#include <QImage>

#include <array>

#include "programs/recogniser/pixels/plane.h"

namespace tralio {

/// Red, green and blue of a picture.
using Channels = std::array<Plane, 3>;

[[nodiscard]] Channels channelsOf(const QImage& image);

/// The part of a picture inside a rectangle that lies within it.
[[nodiscard]] Plane cut(const Plane& plane, const QRect& part);
[[nodiscard]] Channels cut(const Channels& channels, const QRect& part);

}  // namespace tralio
