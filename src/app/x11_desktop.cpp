#include "app/x11_desktop.h"

#include <QGuiApplication>

#include <utility>

namespace tralio {

X11Desktop::X11Desktop(std::unique_ptr<X11Connection> connection) : m_connection(std::move(connection)) {
    if (QGuiApplication::platformName() == u"xcb")
        m_windowSystem =
            std::make_unique<X11WindowSystem>(*m_connection, m_rawInput, X11WindowSystem::Sees::wholeScreen);
    else
        m_windowSystem = std::make_unique<ToolkitWindowSystem>(ToolkitWindowSystem::Compositing::no);
}

std::optional<bool> X11Desktop::focusIsTerminal() {
    const auto front = m_workspace.frontmostApplication();
    return front ? m_accessibility.focusIsTerminal(front->processId) : std::nullopt;
}

QString X11Desktop::frontTitle() const {
    return X11Workspace::title(*m_connection, X11Workspace::activeWindow(*m_connection));
}

HotKeyService::Platform X11Desktop::hotKeyPlatform(Clock& clock) {
    return {
        m_hotKeys, m_workspace, m_accessibility, m_scripts, m_pasteboard, m_keyEvents, m_permissions, clock};
}

}  // namespace tralio
