#pragma once

#include "programs/recogniser/pixels/colour_planes.h"

namespace tralio {

/// The channels of a picture. Those of a scanned page, or of one that was compressed with losses, come
/// without the noise of its grounds: what is nearly one of the few colours that it mostly has is that colour.
/// Any other picture, also a photograph, stays as it is.
[[nodiscard]] Channels withoutNoise(Channels channels);

}  // namespace tralio
