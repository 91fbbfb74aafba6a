#pragma once

#include "hotkeys/workspace.h"
#include "platform/linux/x11/x11_connection.h"

namespace tralio {

class X11Workspace final : public Workspace {
public:
    explicit X11Workspace(X11Connection& connection);

    std::optional<RunningApplication> frontmostApplication() override;
    void openURL(const QUrl& url) override;

    /// The window of the application in front, by the window manager's word, or without one by the keyboard
    /// focus; XCB_NONE when there is none.
    [[nodiscard]] static xcb_window_t activeWindow(X11Connection& connection);
    /// The window's class, as applications choose it ("Mousepad").
    [[nodiscard]] static QString windowClass(X11Connection& connection, xcb_window_t window);

private:
    [[nodiscard]] QString bundleIdentifier(xcb_window_t window, qint32 processId);

    X11Connection& m_connection;
};

}  // namespace tralio
