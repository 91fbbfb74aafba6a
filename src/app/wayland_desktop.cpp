#include "app/wayland_desktop.h"

#include <QGuiApplication>
#include <QStringBuilder>

#include <algorithm>
#include <chrono>
#include <utility>

#include "app/x11_window_system.h"
#include "common/debug_log.h"
#include "platform/linux/atspi/atspi_front.h"
#include "platform/linux/bus/process_facts.h"
#include "platform/linux/bus/session_service.h"
#include "platform/linux/capture/desktop_capture_tools.h"
#include "platform/linux/desktop/unavailable_desktop.h"
#include "platform/linux/keyboard/terminals.h"
#include "platform/linux/portal/portal_capture.h"
#include "platform/linux/selection/current_selection.h"
#include "platform/linux/wayland/wayland_pasteboard.h"
#include "platform/linux/x11/selection_reader.h"
#include "platform/linux/x11/x11_pasteboard.h"
#include "platform/linux/x11/x11_primary_selection.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// In milliseconds; for a selection that is read once our window is there. A busy shell needs half of it.
constexpr int lateSelectionLimit = 1000;

/// For sessions in which PRIMARY cannot be read.
std::optional<QString> nothing(QDeadlineTimer /*deadline*/) {
    return std::nullopt;
}

std::chrono::milliseconds steadyTime() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

bool isDesktop(QStringView name) {
    const QStringList names = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    return std::any_of(names.begin(), names.end(),
        [name](const QString& candidate) { return candidate.compare(name, Qt::CaseInsensitive) == 0; });
}

/// The instruction that binds a key to a command on this desktop.
QString howToBind(const QString& command) {
    if (isDesktop(u"sway"))
        return u"in ~/.config/sway/config: bindsym Mod4+Shift+d exec "_s % command;
    if (isDesktop(u"Hyprland"))
        return u"in hyprland.conf: bind = SUPER SHIFT, D, exec, "_s % command;
    if (isDesktop(u"GNOME"))
        return u"in Settings, Keyboard, Custom Shortcuts: "_s % command;
    if (isDesktop(u"KDE"))
        return u"in System Settings, Shortcuts, Add Command: "_s % command;
    return u"bind a key of the compositor to: "_s % command;
}

}  // namespace

WaylandDesktop::WaylandDesktop(
    std::unique_ptr<WaylandConnection> wayland, std::unique_ptr<X11Connection> xwayland, Clock& clock)
    : m_wayland(std::move(wayland)),
      m_xwayland(std::move(xwayland)),
      m_portal(Portal::ownConnection(),
          {QLatin1String(PortalHotKeys::interface), QLatin1String(PortalCapture::interface)}, clock),
      m_hotKeys(m_portal,
          {{textHotKeyID, u"translate-selection"_s, u"Dịch phần đang chọn"_s},
              {ocrHotKeyID, u"capture-screen"_s, u"Dịch một vùng màn hình"_s}},
          clock),
      m_permissions(m_switch, [this] { return canCapture(); }) {
    debugLog(u"Desktop: a Wayland session, X programs %1"_s.arg(
        m_xwayland ? u"by Xwayland"_s : u"have no server"_s));
    QObject::connect(m_wayland.get(), &WaylandConnection::lost, m_wayland.get(), [] {
        debugLog(
            u"Desktop: the compositor has ended the connection: no clipboard and no selections any more"_s);
    });
    logWindows();
    chooseSelections();
    chooseCapture();
    m_scripts =
        std::make_unique<PrimaryScriptRunner>(m_workspace, *m_primary, [this] { return m_switch.isOn(); });
    m_accessibility = std::make_unique<AtspiAccessibility>(m_switch, m_bus, *m_primary);
    chooseWindowSystem();
    debugLog(m_keyEvents.isGranted()
            ? u"Desktop: synthetic keys by a virtual keyboard, which this compositor gives"_s
            : u"Desktop: no synthetic keys, because this compositor lets no program type"_s);
    QObject::connect(&m_portal, &Portal::ready, &m_portal, [this] { logPortal(); });
}

void WaylandDesktop::logWindows() const {
    if (QGuiApplication::platformName() == u"xcb") {
        debugLog(u"Desktop: the popover by Xwayland, which lets it stand beside the tray"_s);
        return;
    }
    // Qt makes ordinary windows only, no layer surfaces.
    const quint32 layerShell = m_wayland->versionOf("zwlr_layer_shell_v1");
    debugLog(
        u"Desktop: the popover by Wayland, where the compositor puts it (layer-shell %1 is not used), "
        u"because %2"_s.arg(layerShell == 0 ? u"none"_s : QString::number(layerShell),
            m_xwayland ? u"X windows are not wanted or would be blurred"_s : u"there is no Xwayland"_s));
}

void WaylandDesktop::chooseSelections() {
    debugLog(u"Desktop: the application in front by %1"_s.arg(
        m_toplevels ? u"wlr-foreign-toplevel and accessibility"_s : u"accessibility alone"_s));
    FollowedPrimarySelection::Session session{&nothing, [this] { return m_front.identity(); },
        [this] { return frontKeepsPasswords(); }, [this] { return m_keyEvents.canPressCopy(); }, &steadyTime};
    if (m_dataControl) {
        debugLog(
            u"Desktop: clipboard and selections by %1"_s.arg(QLatin1String(m_dataControl->protocolName())));
        m_pasteboard = std::make_unique<WaylandPasteboard>(*m_dataControl);
        session.read = [this](QDeadlineTimer deadline) {
            return m_dataControl->text(DataControl::Selection::primary, deadline);
        };
        auto primary = std::make_unique<FollowedPrimarySelection>(std::move(session));
        QObject::connect(
            m_dataControl.get(), &DataControl::changed, m_dataControl.get(),
            [this, followed = primary.get()](DataControl::Selection selection) {
                if (selection != DataControl::Selection::primary)
                    return;
                followed->noteChange();
                m_focusedSelection.noteChange();
            });
        m_focusedSelection.readText = [this] {
            return m_dataControl->text(DataControl::Selection::primary, QDeadlineTimer(lateSelectionLimit));
        };
        m_primary = std::move(primary);
    } else if (m_xwayland) {
        debugLog(
            u"Desktop: clipboard and selections by Xwayland, because the compositor has no data "
            u"control"_s);
        m_pasteboard = std::make_unique<X11Pasteboard>(*m_xwayland);
        session.read = [this](QDeadlineTimer deadline) {
            return readSelectionText(*m_xwayland, XCB_ATOM_PRIMARY, deadline);
        };
        auto primary = std::make_unique<FollowedPrimarySelection>(std::move(session));
        m_primaryWatch = std::make_unique<X11SelectionWatch>(
            *m_xwayland, XCB_ATOM_PRIMARY, [this, followed = primary.get()](xcb_timestamp_t) {
                followed->noteChange();
                m_focusedSelection.noteChange();
            });
        if (QGuiApplication::platformName() == u"xcb")
            m_focusedSelection.readText = [this] {
                return readSelectionText(*m_xwayland, XCB_ATOM_PRIMARY, QDeadlineTimer(lateSelectionLimit));
            };
        m_primary = std::move(primary);
    } else {
        debugLog(
            u"Desktop: the clipboard while our window has the focus, because the compositor has neither "
            u"data control nor Xwayland"_s);
        m_pasteboard = std::make_unique<ToolkitPasteboard>();
        m_primary = std::make_unique<FollowedPrimarySelection>(std::move(session));
    }
}

bool WaylandDesktop::frontKeepsPasswords() const {
    if (m_xwayland && X11PrimarySelection::ownerGivesPasswords(*m_xwayland))
        return false;
    QStringList names{m_front.applicationId()};
    const auto accessible = activeAtspiApplication(m_bus);
    if (!accessible)
        return keepsPasswordsToItself(names, {});
    names << accessible->name << processName(accessible->processId);
    return keepsPasswordsToItself(names, accessible->toolkit);
}

void WaylandDesktop::chooseWindowSystem() {
    if (m_xwayland && QGuiApplication::platformName() == u"xcb") {
        m_rawInput = std::make_unique<X11RawInput>(*m_xwayland);
        m_windowSystem =
            std::make_unique<X11WindowSystem>(*m_xwayland, *m_rawInput, X11WindowSystem::Sees::xWindows);
    } else {
        m_windowSystem = std::make_unique<ToolkitWindowSystem>(ToolkitWindowSystem::Compositing::yes);
    }
}

void WaylandDesktop::chooseCapture() {
    if (m_wayland->versionOf("zwlr_screencopy_manager_v1") > 0 && GrimCapture::isInstalled()) {
        debugLog(u"Desktop: screen capture by grim and slurp, which this compositor serves"_s);
        m_capture = std::make_unique<GrimCapture>();
    } else if (isDesktop(u"KDE") && SpectacleCapture::isInstalled()) {
        debugLog(u"Desktop: screen capture by KDE's spectacle"_s);
        m_capture = std::make_unique<SpectacleCapture>();
    } else {
        debugLog(u"Desktop: screen capture by the Screenshot portal, if there is one"_s);
        m_capture = std::make_unique<PortalCapture>(m_portal);
        m_captureNeedsPortal = true;
    }
}

CopyTarget WaylandDesktop::copyTarget() {
    const auto accessible = activeAtspiApplication(m_bus);
    // The last report of an application that hangs may be outdated, and the keys would reach another window.
    if (!accessible || !accessible->answers)
        return {};
    return {{accessible->name, processName(accessible->processId)},
        m_accessibility->focusIsTerminal(accessible->processId),
        ProcessTable().servesTerminal(accessible->processId)};
}

bool WaylandDesktop::canCapture() const {
    return !m_captureNeedsPortal || m_portal.version(QLatin1String(PortalCapture::interface)) > 0;
}

void WaylandDesktop::logPortal() {
    const uint shortcuts = m_portal.version(QLatin1String(PortalHotKeys::interface));
    const uint screenshot = m_portal.version(QLatin1String(PortalCapture::interface));
    debugLog(
        u"Desktop: the portal has GlobalShortcuts %1 and Screenshot %2"_s.arg(shortcuts).arg(screenshot));
    if (shortcuts > 0)
        debugLog(u"Desktop: hot keys by the GlobalShortcuts portal"_s);
    else
        debugLog(u"Desktop: no hot keys, because this session has no GlobalShortcuts portal; "_s %
            howToBind(u"gdbus call --session --dest %1 --object-path %2 --method %1.TranslateSelection"_s.arg(
                QLatin1String(SessionService::name), QLatin1String(SessionService::path))) %
            u" (and another key to .CaptureScreen)"_s);
}

HotKeyService::Platform WaylandDesktop::hotKeyPlatform(Clock& clock) {
    return {m_hotKeys, m_workspace, *m_accessibility, *m_scripts, *m_pasteboard, m_keyEvents, m_permissions,
        clock};
}

LateSelectionReader WaylandDesktop::selectionOnceFocused() {
    return [this](std::function<void(const LateSelection&)> deliver) {
        // Where the application in front is known, PRIMARY has been read already, if it can be. A word that
        // is left to a Copy which cannot be pressed is the user's to send.
        const bool isFrontKnown = m_toplevels || m_switch.isOn();
        if ((m_dataControl || m_xwayland) && isFrontKnown)
            deliver({m_primary->takeDoubtfulWord(), LateSelection::Use::offer});
        else
            m_focusedSelection.read(std::move(deliver));
    };
}

}  // namespace tralio
