#include "platform/linux/x11/x11_window_activator.h"

#include <QGuiApplication>

#include <algorithm>
#include <iterator>

#include "platform/linux/x11/x11_workspace.h"

namespace tralio {
namespace {

/// The source indication of a request to the window manager: the user, not an application that pushes itself
/// forward.
constexpr quint32 byTheUser = 2;

}  // namespace

X11WindowActivator::X11WindowActivator(X11Connection& connection) : m_connection(connection) {}

void X11WindowActivator::activate(WId window) {
    const xcb_timestamp_t time = m_connection.serverTime();
    const auto target = static_cast<xcb_window_t>(window);

    // The window belongs to the tray item, so it is kept out of taskbars and window switchers.
    constexpr quint32 add = 1;
    tellWindowManager(target, "_NET_WM_STATE",
        {add, m_connection.atom("_NET_WM_STATE_SKIP_TASKBAR"), m_connection.atom("_NET_WM_STATE_SKIP_PAGER"),
            byTheUser});
    tellWindowManager(target, "_NET_ACTIVE_WINDOW", {byTheUser, time});

    if (!m_connection.hasWindowManager())
        xcb_set_input_focus(m_connection.xcb(), XCB_INPUT_FOCUS_PARENT, target, time);
    xcb_flush(m_connection.xcb());
}

bool X11WindowActivator::isActive(WId window) {
    return X11Workspace::activeWindow(m_connection) == static_cast<xcb_window_t>(window);
}

bool X11WindowActivator::isOnOtherDesktop(WId window) {
    constexpr quint32 onAll = 0xFFFFFFFF;
    const auto own =
        m_connection.cardinal(static_cast<xcb_window_t>(window), m_connection.atom("_NET_WM_DESKTOP"));
    const auto shown = m_connection.cardinal(m_connection.root(), m_connection.atom("_NET_CURRENT_DESKTOP"));
    return own && shown && *own != onAll && *own != *shown;
}

void X11WindowActivator::setShadow(WId window, const QMargins& margins) {
    // On the connection that makes and shows the window, so that it comes between the two.
    const auto* toolkit = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (toolkit == nullptr)
        return;
    const std::array<int, 4> extents{margins.left(), margins.right(), margins.top(), margins.bottom()};
    xcb_change_property(toolkit->connection(), XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window),
        m_connection.atom("_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 32, extents.size(), extents.data());
}

void X11WindowActivator::tellWindowManager(
    xcb_window_t window, const char* what, const std::array<quint32, 5>& data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = m_connection.atom(what);
    std::copy(data.begin(), data.end(), std::begin(message.data.data32));
    xcb_send_event(m_connection.xcb(), 0, m_connection.root(),
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
        reinterpret_cast<const char*>(&message));
}

bool X11WindowActivator::isCompositing() {
    const XcbPtr<xcb_get_selection_owner_reply_t> manager{xcb_get_selection_owner_reply(m_connection.xcb(),
        xcb_get_selection_owner(m_connection.xcb(), m_connection.atom("_NET_WM_CM_S0")), nullptr)};
    return manager && manager->owner != XCB_NONE;
}

}  // namespace tralio
