#pragma once

#include "app/desktop.h"
#include "app/x11_window_system.h"
#include "platform/linux/atspi/accessibility_switch.h"
#include "platform/linux/atspi/atspi_accessibility.h"
#include "platform/linux/capture/region_picker.h"
#include "platform/linux/desktop/desktop_permissions.h"
#include "platform/linux/helpers/installation.h"
#include "platform/linux/selection/primary_script_runner.h"
#include "platform/linux/x11/x11_hot_keys.h"
#include "platform/linux/x11/x11_key_event_poster.h"
#include "platform/linux/x11/x11_pasteboard.h"
#include "platform/linux/x11/x11_primary_selection.h"
#include "platform/linux/x11/x11_workspace.h"

namespace tralio {

/// A session on a real X server.
class X11Desktop final : public Desktop {
public:
    explicit X11Desktop(std::unique_ptr<X11Connection> connection);

    HotKeyService::Platform hotKeyPlatform(Clock& clock) override;
    WindowSystem& windowSystem() override { return *m_windowSystem; }
    CaptureTool& captureTool() override { return m_regionPicker; }

private:
    [[nodiscard]] std::optional<bool> focusIsTerminal();
    [[nodiscard]] QString frontTitle() const;

    std::unique_ptr<X11Connection> m_connection;
    X11RawInput m_rawInput{*m_connection};
    X11HotKeys m_hotKeys{*m_connection, m_rawInput};
    X11Workspace m_workspace{*m_connection};
    X11PrimarySelection m_primary{*m_connection, m_rawInput,
        {[this](quint8 keyCode, quint16 held) { return m_hotKeys.isHotKey(keyCode, held); },
            [this] { return m_keyEvents.shortcutInFront() == CopyShortcut::control; }}};
    PrimaryScriptRunner m_scripts{m_workspace, m_primary, [this] { return m_switch.isOn(); }};
    X11Pasteboard m_pasteboard{*m_connection};
    X11KeyEventPoster m_keyEvents{*m_connection, m_hotKeys, [this] { return focusIsTerminal(); }};
    std::unique_ptr<WindowSystem> m_windowSystem;
    AccessibilitySwitch m_switch;
    AtspiBus m_bus;
    AtspiAccessibility m_accessibility{m_switch, m_bus, m_primary, [this] { return frontTitle(); }};
    DesktopPermissions m_permissions{m_switch, [] { return true; }};
    RegionPicker m_regionPicker{installation::helper(u"tralio-snip")};
};

}  // namespace tralio
