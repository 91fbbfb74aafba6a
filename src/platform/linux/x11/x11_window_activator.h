#pragma once

#include <QMargins>
#include <QWindow>

#include <array>

#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// Brings our window to the front with the keyboard focus, also under window managers that prevent focus
/// stealing: the request carries the current time, which is practically that of the user's key press or
/// click.
class X11WindowActivator final {
public:
    explicit X11WindowActivator(X11Connection& connection);

    /// Call when the window is shown.
    void activate(WId window);

    /// Whether the window is the one in front, also while a grab keeps the keyboard from it for a moment.
    [[nodiscard]] bool isActive(WId window);

    /// Whether the window is on another desktop (workspace) than the one that the user sees.
    [[nodiscard]] bool isOnOtherDesktop(WId window);

    /// Tells the window manager how much of a window, in pixels, is shadow, which may leave the screen.
    void setShadow(WId window, const QMargins& margins);

    /// Whether windows may be translucent.
    [[nodiscard]] bool isCompositing();

private:
    void tellWindowManager(xcb_window_t window, const char* what, const std::array<quint32, 5>& data);

    X11Connection& m_connection;
};

}  // namespace tralio
