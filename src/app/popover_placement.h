#pragma once

#include <QRect>

#include <optional>

namespace tralio {

/// Where a popover of `size` stands: centred below its anchor, or above it when the anchor is in the lower
/// half of the screen, never outside `available` (the screen without its panels). Without an anchor it hangs
/// from the top right corner. All in logical pixels of the virtual desktop.
[[nodiscard]] QRect popoverPlace(const QSize& size, const QRect& available, std::optional<QRect> anchor);

/// How high a popover is that wants to be `wanted` high: lower where the screen without its panels is, down
/// to what its panels need.
[[nodiscard]] int popoverHeight(int wanted, const QRect& available);

}  // namespace tralio
