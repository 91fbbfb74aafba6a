#pragma once

#include <QPainter>

#include "ui/kit/colors.h"

namespace tralio {

/// The blurred shadow of a rounded rectangle. `blur` is the width of the soft edge, twice its standard
/// deviation.
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

/// Paints the shadow of `box`. It is blurred once per colour and radius and cached as a small pixmap, whose
/// corners are drawn unscaled and whose sides are stretched.
void paintShadow(QPainter& painter, const QRect& box, int radius, const Shadow& shadow);

}  // namespace tralio
