#include "app/desktop.h"

#include <QGuiApplication>

#include "app/wayland_desktop.h"
#include "app/x11_desktop.h"
#include "common/debug_log.h"
#include "platform/linux/capture/desktop_capture_tools.h"
#include "platform/linux/desktop/unavailable_desktop.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// A session without a display server that we can reach: the popover works, but nothing that needs other
/// programs.
class BareDesktop final : public Desktop {
public:
    HotKeyService::Platform hotKeyPlatform(Clock& clock) override {
        return {m_unavailable.hotKeys, m_unavailable.workspace, m_unavailable.accessibility,
            m_unavailable.scripts, m_pasteboard, m_unavailable.keyEvents, m_unavailable.permissions, clock};
    }
    WindowSystem& windowSystem() override { return m_windowSystem; }
    CaptureTool& captureTool() override { return m_capture; }

private:
    UnavailableDesktop m_unavailable;
    ToolkitPasteboard m_pasteboard;
    ToolkitWindowSystem m_windowSystem{ToolkitWindowSystem::Compositing::no};
    NoCapture m_capture;
};

}  // namespace

std::unique_ptr<Desktop> Desktop::probe(Clock& clock) {
    auto wayland = WaylandConnection::open();
    auto x11 = X11Connection::open();
    if (wayland)
        return std::make_unique<WaylandDesktop>(std::move(wayland), std::move(x11), clock);
    if (x11) {
        debugLog(u"Desktop: hot keys, selections and synthetic keys by X11, because DISPLAY answers"_s);
        return std::make_unique<X11Desktop>(std::move(x11));
    }
    debugLog(u"Desktop: no hot keys and no selections, because no display server answers (platform %1)"_s.arg(
        QGuiApplication::platformName()));
    return std::make_unique<BareDesktop>();
}

}  // namespace tralio
