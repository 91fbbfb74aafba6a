#pragma once

#include <functional>
#include <memory>

#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// Sees windows come on the display, to the moment.
class WindowWatch final {
public:
    /// What a window does when it comes.
    enum class Coming : quint8 {
        intoTrayOrFrame = XCB_REPARENT_NOTIFY,
        ontoScreen = XCB_MAP_NOTIFY,
    };

    WindowWatch();

    /// Milliseconds until a window comes of what `trigger` did; 0 when none came in 10 s.
    double untilOneComes(Coming coming, const std::function<void()>& trigger);

    /// Presses and releases the hot key for the selected text.
    void pressHotKey();

private:
    std::unique_ptr<X11Connection> m_connection;
};

}  // namespace tralio
