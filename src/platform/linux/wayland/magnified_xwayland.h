#pragma once

namespace tralio {

/// Whether this session shows X windows enlarged, and so blurred: it has a screen with more than one pixel to
/// the unit, and lets the X server see fewer pixels than there are. Asks both servers; to be called before
/// the application object is made, or after.
[[nodiscard]] bool isXwaylandMagnified();

}  // namespace tralio
