#include "app/desktop.h"

#include <QGuiApplication>

#include "common/debug_log.h"
#include "platform/linux/atspi/accessibility_switch.h"
#include "platform/linux/atspi/atspi_accessibility.h"
#include "platform/linux/session/desktop_permissions.h"
#include "platform/linux/session/unavailable_desktop.h"
#include "platform/linux/x11/x11_hot_keys.h"
#include "platform/linux/x11/x11_key_event_poster.h"
#include "platform/linux/x11/x11_pasteboard.h"
#include "platform/linux/x11/x11_primary_selection.h"
#include "platform/linux/x11/x11_script_runner.h"
#include "platform/linux/x11/x11_window_activator.h"
#include "platform/linux/x11/x11_workspace.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

class X11Desktop final : public Desktop {
public:
    explicit X11Desktop(std::unique_ptr<X11Connection> connection) : m_connection(std::move(connection)) {}

    HotKeyService::Platform hotKeyPlatform(Clock& clock) override {
        return {m_hotKeys,    m_workspace, m_accessibility, m_scripts,
                m_pasteboard, m_keyEvents, m_permissions,   clock};
    }

    Popover::WindowSystem windowSystem() override {
        // The toolkit's windows are X windows only on its X11 platform.
        if (QGuiApplication::platformName() != u"xcb")
            return {};
        return {[this] { return m_activator.isCompositing(); },
                [this](WId window) { m_activator.activate(window); },
                [this](WId window) { return m_activator.isActive(window); },
                [this] { return m_activator.isMousePressed(); }};
    }

private:
    std::unique_ptr<X11Connection> m_connection;
    X11HotKeys m_hotKeys{*m_connection};
    X11Workspace m_workspace{*m_connection};
    X11PrimarySelection m_primary{*m_connection};
    X11ScriptRunner m_scripts{m_workspace, m_primary};
    X11Pasteboard m_pasteboard{*m_connection};
    X11KeyEventPoster m_keyEvents{*m_connection};
    X11WindowActivator m_activator{*m_connection};
    AccessibilitySwitch m_switch;
    AtspiAccessibility m_accessibility{m_switch, m_primary};
    DesktopPermissions m_permissions{m_switch};
};

/// A session without an X server that we can reach: the popover works, reaching into other programs does not.
class BareDesktop final : public Desktop {
public:
    HotKeyService::Platform hotKeyPlatform(Clock& clock) override {
        return {m_unavailable.hotKeys,
                m_unavailable.workspace,
                m_unavailable.accessibility,
                m_unavailable.scripts,
                m_pasteboard,
                m_unavailable.keyEvents,
                m_unavailable.permissions,
                clock};
    }
    Popover::WindowSystem windowSystem() override { return {}; }

private:
    UnavailableDesktop m_unavailable;
    ToolkitPasteboard m_pasteboard;
};

}  // namespace

std::unique_ptr<Desktop> Desktop::probe() {
    if (auto connection = X11Connection::open()) {
        debugLog(u"Desktop: hot keys, selections and synthetic keys by X11, because DISPLAY answers"_s);
        return std::make_unique<X11Desktop>(std::move(connection));
    }
    debugLog(u"Desktop: no hot keys and no selections, because no X server answers (platform %1)"_s.arg(
        QGuiApplication::platformName()));
    return std::make_unique<BareDesktop>();
}

}  // namespace tralio
