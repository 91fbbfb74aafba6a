#pragma once

#include <QSize>

#include <vector>

namespace tralio {

/// A screen as the compositor tells of it.
struct CompositorScreen {
    QSize pixels;
    qint32 scale = 1;  ///< in whole steps: the next above the real one
    QSize size;        ///< in the units of its own windows; empty where it does not say
};

/// Asked on a connection of their own, of which a moment is waited for; none where there is no compositor.
[[nodiscard]] std::vector<CompositorScreen> compositorScreens();

}  // namespace tralio
