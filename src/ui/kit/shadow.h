#pragma once

#include <QPainter>

#include "ui/kit/colors.h"

namespace tralio {

/// The blurred shadow of a rounded rectangle. `blur` is the width of the soft edge, twice its deviation.
struct Shadow {
    ColorRole color;
    int offset;  ///< downwards
    int blur;

    bool operator==(const Shadow&) const = default;
};

namespace shadow {

inline constexpr Shadow window{ColorRole::windowShadow, 14, 36};
inline constexpr Shadow windowNear{ColorRole::windowNearShadow, 2, 6};
inline constexpr Shadow menu{ColorRole::menuShadow, 8, 24};

}  // namespace shadow

/// Paints the shadow that `box` throws. It is blurred once for its colour and radius and kept as a small
/// pixmap, of which the corners are drawn as they are and the sides stretched.
void paintShadow(QPainter& painter, const QRect& box, int radius, const Shadow& shadow);

}  // namespace tralio
