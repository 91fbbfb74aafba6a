#pragma once

#include <QRect>

#include <optional>

namespace tralio {

/// The place of a popover of `size`: centred below its anchor, or above it when the anchor is in the lower
/// half of the screen, always inside `available` (the screen without its panels). Without an anchor it is in
/// the top right corner. All in logical pixels of the virtual desktop.
[[nodiscard]] QRect popoverPlace(const QSize& size, const QRect& available, std::optional<QRect> anchor);

/// The height of a popover that should be `wanted` high: less on a screen that is lower without its panels,
/// but not less than the popover's own panels need.
[[nodiscard]] int popoverHeight(int wanted, const QRect& available);

}  // namespace tralio
