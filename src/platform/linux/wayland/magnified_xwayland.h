#pragma once

namespace tralio {

/// Whether this session shows X windows enlarged, and so blurred: it has a screen with more than one pixel
/// per unit, and the X server has fewer pixels than the screens. Asks both servers. May be called before or
/// after the application object is made.
[[nodiscard]] bool isXwaylandMagnified();

}  // namespace tralio
