#pragma once

#include <QWindow>

#include <array>

#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// Brings our window to the front with the keyboard focus, also under window managers that keep windows from
/// stealing it: the request carries the present time, which is what the user's press was a moment ago.
class X11WindowActivator final {
public:
    explicit X11WindowActivator(X11Connection& connection);

    /// Call right before the window is shown, so that the window manager maps it focused.
    void prepare(WId window);
    /// Call when it is shown.
    void activate(WId window);

    /// Whether windows may be translucent.
    [[nodiscard]] bool isCompositing();

private:
    void tellWindowManager(xcb_window_t window, const char* what, const std::array<quint32, 5>& data);

    X11Connection& m_connection;
};

}  // namespace tralio
