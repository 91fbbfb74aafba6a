#pragma once

#include <QWindow>

#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// Takes all clicks at the place that a window had at the construction, while this exists: an invisible
/// window above all others, which takes no focus.
class X11ClickShield final {
public:
    X11ClickShield(X11Connection& connection, WId window);
    X11ClickShield(const X11ClickShield&) = delete;
    X11ClickShield& operator=(const X11ClickShield&) = delete;
    ~X11ClickShield();

private:
    X11Connection& m_connection;
    xcb_window_t m_shield = XCB_NONE;
};

}  // namespace tralio
