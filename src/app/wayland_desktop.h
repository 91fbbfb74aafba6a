#pragma once

#include "app/desktop.h"
#include "platform/linux/atspi/accessibility_switch.h"
#include "platform/linux/atspi/atspi_accessibility.h"
#include "platform/linux/desktop/desktop_permissions.h"
#include "platform/linux/portal/portal_hot_keys.h"
#include "platform/linux/selection/focused_selection.h"
#include "platform/linux/selection/followed_primary_selection.h"
#include "platform/linux/selection/primary_script_runner.h"
#include "platform/linux/wayland/data_control.h"
#include "platform/linux/wayland/front_application.h"
#include "platform/linux/wayland/toplevel_watch.h"
#include "platform/linux/wayland/wayland_key_event_poster.h"
#include "platform/linux/wayland/wayland_workspace.h"
#include "platform/linux/x11/x11_raw_input.h"
#include "platform/linux/x11/x11_selection_watch.h"

namespace tralio {

/// A Wayland session, with or without an X server for X programs.
class WaylandDesktop final : public Desktop {
public:
    /// `xwayland` may be null.
    WaylandDesktop(
        std::unique_ptr<WaylandConnection> wayland, std::unique_ptr<X11Connection> xwayland, Clock& clock);

    HotKeyService::Platform hotKeyPlatform(Clock& clock) override;
    WindowSystem& windowSystem() override { return *m_windowSystem; }
    CaptureTool& captureTool() override { return *m_capture; }
    LateSelectionReader selectionOnceFocused() override;

private:
    void logWindows() const;
    void chooseSelections();
    /// Whether the application in front is known not to give passwords to PRIMARY.
    [[nodiscard]] bool frontKeepsPasswords() const;
    void chooseWindowSystem();
    void chooseCapture();
    [[nodiscard]] CopyTarget copyTarget();
    [[nodiscard]] bool canCapture() const;
    void logPortal();

    std::unique_ptr<WaylandConnection> m_wayland;
    std::unique_ptr<X11Connection> m_xwayland;
    std::unique_ptr<ToplevelWatch> m_toplevels = ToplevelWatch::open(*m_wayland);
    /// null without the protocol
    std::unique_ptr<DataControl> m_dataControl = DataControl::open(*m_wayland);
    Portal m_portal;
    PortalHotKeys m_hotKeys;
    AccessibilitySwitch m_switch;
    AtspiBus m_bus;
    FrontApplication m_front{m_toplevels.get(), m_bus};
    WaylandWorkspace m_workspace{m_front, m_bus};
    std::unique_ptr<Pasteboard> m_pasteboard;
    std::unique_ptr<FollowedPrimarySelection> m_primary;
    std::unique_ptr<X11SelectionWatch> m_primaryWatch;
    std::unique_ptr<CaptureTool> m_capture;
    bool m_captureNeedsPortal = false;
    std::unique_ptr<PrimaryScriptRunner> m_scripts;
    std::unique_ptr<AtspiAccessibility> m_accessibility;
    WaylandKeyEventPoster m_keyEvents{*m_wayland, m_front, [this] { return copyTarget(); }};
    DesktopPermissions m_permissions;
    std::unique_ptr<X11RawInput> m_rawInput;  ///< null without Xwayland
    std::unique_ptr<WindowSystem> m_windowSystem;
    FocusedSelection m_focusedSelection;
};

}  // namespace tralio
