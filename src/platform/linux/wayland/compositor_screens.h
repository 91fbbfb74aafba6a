#pragma once

#include <QSize>

#include <vector>

namespace tralio {

/// A screen as the compositor reports it.
struct CompositorScreen {
    QSize pixels;
    qint32 scale = 1;  ///< integral; a fractional scale is rounded up
    QSize size;        ///< in the units of native Wayland windows; empty if not reported
};

/// Asks on a connection of its own, and waits a moment for the answer; empty if there is no compositor.
[[nodiscard]] std::vector<CompositorScreen> compositorScreens();

}  // namespace tralio
