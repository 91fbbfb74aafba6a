#include "platform/linux/x11/x11_workspace.h"

#include "platform/linux/bus/process_facts.h"
#include "platform/linux/bus/sandbox_id.h"
#include "platform/linux/desktop/desktop_settings.h"
#include "platform/linux/keyboard/terminals.h"

namespace tralio {
namespace {

/// The window with the keyboard focus, or the ancestor of it that has the application's class.
xcb_window_t focusedTopLevel(X11Connection& connection) {
    const XcbPtr<xcb_get_input_focus_reply_t> focus{
        xcb_get_input_focus_reply(connection.xcb(), xcb_get_input_focus(connection.xcb()), nullptr)};
    if (!focus || focus->focus <= XCB_INPUT_FOCUS_POINTER_ROOT || focus->focus == connection.root())
        return XCB_NONE;
    xcb_window_t window = focus->focus;
    while (connection.property(window, XCB_ATOM_WM_CLASS).isEmpty()) {
        const XcbPtr<xcb_query_tree_reply_t> tree{
            xcb_query_tree_reply(connection.xcb(), xcb_query_tree(connection.xcb(), window), nullptr)};
        if (!tree || tree->parent == connection.root() || tree->parent == XCB_NONE)
            break;
        window = tree->parent;
    }
    return window;
}

/// The window's class as the application sets it ("Mousepad"): the second of two strings.
QString windowClass(X11Connection& connection, xcb_window_t window) {
    return QString::fromUtf8(connection.property(window, XCB_ATOM_WM_CLASS).split('\0').value(1));
}

QString desktopId(X11Connection& connection, xcb_window_t window) {
    for (const char* property : {"_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE"}) {
        QString id = QString::fromUtf8(connection.property(window, connection.atom(property)));
        if (!id.isEmpty())
            return id;
    }
    return {};
}

}  // namespace

X11Workspace::X11Workspace(X11Connection& connection) : m_connection(connection) {}

xcb_window_t X11Workspace::activeWindow(X11Connection& connection) {
    // A running window manager that reports no active window is believed.
    const auto active = connection.hasWindowManager()
        ? connection.cardinal(connection.root(), connection.atom("_NET_ACTIVE_WINDOW"))
        : std::nullopt;
    return active ? static_cast<xcb_window_t>(*active) : focusedTopLevel(connection);
}

QString X11Workspace::title(X11Connection& connection, xcb_window_t window) {
    const QByteArray title = connection.property(window, connection.atom("_NET_WM_NAME"));
    return title.isEmpty() ? QString::fromLatin1(connection.property(window, XCB_ATOM_WM_NAME))
                           : QString::fromUtf8(title);
}

CopyTarget X11Workspace::copyTarget(X11Connection& connection, xcb_window_t window) {
    CopyTarget target{{desktopId(connection, window)}, {}, {}};
    // Both the instance, which stays "xterm" whatever class xterm is given, and the class.
    for (const QByteArray& name : connection.property(window, XCB_ATOM_WM_CLASS).split('\0'))
        target.names += QString::fromUtf8(name);
    if (const auto process = connection.processOf(window)) {
        target.names += processName(*process);
        target.servesTerminal = ProcessTable().servesTerminal(*process);
    }
    return target;
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() {
    const xcb_window_t window = activeWindow(m_connection);
    if (window == XCB_NONE)
        return std::nullopt;
    const auto process = m_connection.processOf(window);
    if (!process)
        return std::nullopt;
    const QString name = windowClass(m_connection, window);
    RunningApplication application{*process, std::nullopt, std::nullopt};
    if (!name.isEmpty())
        application.localizedName = name;
    if (const QString id = bundleIdentifier(window, *process); !id.isEmpty())
        application.bundleIdentifier = id;
    return application;
}

QString X11Workspace::bundleIdentifier(xcb_window_t window, qint32 processId) {
    if (QString id = sandboxId(processId); !id.isEmpty())
        return id;
    const QString id = desktopId(m_connection, window);
    return id.isEmpty() ? windowClass(m_connection, window) : id;
}

void X11Workspace::openURL(const QUrl& url) {
    openDesktopURL(url);
}

}  // namespace tralio
