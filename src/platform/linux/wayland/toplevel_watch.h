#pragma once

#include <QHash>
#include <QObject>

#include "platform/linux/wayland/wayland_connection.h"

namespace tralio {

/// Tracks which application's window is in front, on compositors that report other programs' windows through
/// the wlr-foreign-toplevel protocol (sway, Hyprland, and others based on wlroots).
class ToplevelWatch final {
public:
    /// Null if the compositor does not have the protocol.
    [[nodiscard]] static std::unique_ptr<ToplevelWatch> open(WaylandConnection& connection);
    ~ToplevelWatch();

    /// The application id of the active window, for an X window its class; empty if there is none.
    [[nodiscard]] QString activeApplication() const {
        return m_active ? m_windows.value(m_active).appId : QString();
    }

    /// Whether there is an activated window.
    [[nodiscard]] bool hasActiveWindow() const { return m_active != nullptr; }

private:
    struct Window {
        QString appId;
        QString arrivingAppId;
        bool arrivingActive = false;
    };

    explicit ToplevelWatch(WaylandObject manager);

    struct ManagerListener;
    struct HandleListener;
    static const ManagerListener managerListener;
    static const HandleListener handleListener;

    void done(wl_proxy* window);
    void closed(wl_proxy* window);
    void forgetWindows();

    WaylandObject m_manager;
    QHash<wl_proxy*, Window> m_windows;
    wl_proxy* m_active = nullptr;
};

}  // namespace tralio
