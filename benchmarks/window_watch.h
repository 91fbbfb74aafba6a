#pragma once

#include <functional>
#include <memory>

#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// Sees a window come on the display, at the moment it does.
class WindowWatch final {
public:
    /// How a window comes.
    enum class Coming : quint8 {
        intoTrayOrFrame = XCB_REPARENT_NOTIFY,
        ontoScreen = XCB_MAP_NOTIFY,
    };

    WindowWatch();

    /// Milliseconds from `trigger` until a window comes; 0 when none came within 10 s.
    double untilOneComes(Coming coming, const std::function<void()>& trigger);

    /// Presses and releases the hot key for the selected text.
    void pressHotKey();

private:
    std::unique_ptr<X11Connection> m_connection;
};

}  // namespace tralio
