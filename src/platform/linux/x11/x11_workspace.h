#pragma once

#include "hotkeys/workspace.h"
#include "platform/linux/keyboard/copy_shortcut.h"
#include "platform/linux/x11/x11_connection.h"

namespace tralio {

class X11Workspace final : public Workspace {
public:
    explicit X11Workspace(X11Connection& connection);

    std::optional<RunningApplication> frontmostApplication() override;
    void openURL(const QUrl& url) override;

    /// The window of the application in front, according to the window manager, or without one by the
    /// keyboard focus; XCB_NONE if there is none.
    [[nodiscard]] static xcb_window_t activeWindow(X11Connection& connection);
    [[nodiscard]] static QString title(X11Connection& connection, xcb_window_t window);
    /// What the copy shortcut needs to know of a window's application, except its focus.
    [[nodiscard]] static CopyTarget copyTarget(X11Connection& connection, xcb_window_t window);

private:
    [[nodiscard]] QString bundleIdentifier(xcb_window_t window, qint32 processId);

    X11Connection& m_connection;
};

}  // namespace tralio
