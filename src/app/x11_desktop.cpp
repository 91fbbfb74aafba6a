#include "app/x11_desktop.h"

#include <QGuiApplication>

#include <utility>

namespace tralio {

Popover::WindowSystem x11WindowSystem(X11WindowActivator& activator) {
    if (QGuiApplication::platformName() != u"xcb")
        return {};
    return {[&activator] { return activator.isCompositing(); }, true,
        [&activator](WId window) { activator.activate(window); },
        [&activator](WId window) { return activator.isActive(window); },
        [&activator] { return activator.isMousePressed(); }};
}

X11Desktop::X11Desktop(std::unique_ptr<X11Connection> connection) : m_connection(std::move(connection)) {}

HotKeyService::Platform X11Desktop::hotKeyPlatform(Clock& clock) {
    return {
        m_hotKeys, m_workspace, m_accessibility, m_scripts, m_pasteboard, m_keyEvents, m_permissions, clock};
}

}  // namespace tralio
