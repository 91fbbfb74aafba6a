#include "platform/linux/x11/x11_typing_aid.h"

#include <algorithm>
#include <vector>

namespace tralio {
namespace {

std::vector<quint32> cardinals(X11Connection& connection, xcb_window_t window, const char* name) {
    const QByteArray bytes = connection.property(window, connection.atom(name));
    std::vector<quint32> values(static_cast<size_t>(bytes.size()) / sizeof(quint32));
    std::copy_n(bytes.constData(), values.size() * sizeof(quint32), reinterpret_cast<char*>(values.data()));
    return values;
}

bool isManaged(X11Connection& connection, xcb_window_t window) {
    return !connection.property(window, connection.atom("WM_STATE")).isEmpty();
}

/// The managed window inside this frame, or this window itself; none if the window manager manages neither.
xcb_window_t managedIn(X11Connection& connection, xcb_window_t window, int depth) {
    if (isManaged(connection, window))
        return window;
    const XcbPtr<xcb_query_tree_reply_t> tree{
        xcb_query_tree_reply(connection.xcb(), xcb_query_tree(connection.xcb(), window), nullptr)};
    const int count = tree && depth > 0 ? xcb_query_tree_children_length(tree.get()) : 0;
    for (int i = 0; i < count; ++i) {
        const xcb_window_t found = managedIn(connection, xcb_query_tree_children(tree.get())[i], depth - 1);
        if (found != XCB_NONE)
            return found;
    }
    return XCB_NONE;
}

bool takesKeyboard(X11Connection& connection, xcb_window_t window) {
    // flags, input, …
    const std::vector<quint32> hints = cardinals(connection, window, "WM_HINTS");
    constexpr quint32 inputHint = 1;
    if (hints.size() < 2 || (hints[0] & inputHint) == 0 || hints[1] != 0)
        return true;
    const std::vector<quint32> protocols = cardinals(connection, window, "WM_PROTOCOLS");
    return std::find(protocols.begin(), protocols.end(), connection.atom("WM_TAKE_FOCUS")) != protocols.end();
}

bool isPartOfDesktop(X11Connection& connection, xcb_window_t window) {
    const std::vector<quint32> types = cardinals(connection, window, "_NET_WM_WINDOW_TYPE");
    return std::any_of(types.begin(), types.end(), [&](quint32 type) {
        return type == connection.atom("_NET_WM_WINDOW_TYPE_DOCK") ||
            type == connection.atom("_NET_WM_WINDOW_TYPE_DESKTOP");
    });
}

/// Excludes the window manager's own full-screen windows: the input-only one that guards what it covers, and
/// the one in which a shell draws its panels.
bool isUnmanagedAid(X11Connection& connection, xcb_window_t window) {
    xcb_connection_t* xcb = connection.xcb();
    const auto attributesAsked = xcb_get_window_attributes(xcb, window);
    const auto areaAsked = xcb_get_geometry(xcb, window);
    const auto screenAsked = xcb_get_geometry(xcb, connection.root());
    const XcbPtr<xcb_get_window_attributes_reply_t> attributes{
        xcb_get_window_attributes_reply(xcb, attributesAsked, nullptr)};
    const XcbPtr<xcb_get_geometry_reply_t> area{xcb_get_geometry_reply(xcb, areaAsked, nullptr)};
    const XcbPtr<xcb_get_geometry_reply_t> screen{xcb_get_geometry_reply(xcb, screenAsked, nullptr)};
    return attributes && area && screen && attributes->override_redirect != 0 &&
        attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT &&
        (area->width < screen->width || area->height < screen->height);
}

}  // namespace

bool isOverTypingAid(X11Connection& connection) {
    const XcbPtr<xcb_query_pointer_reply_t> pointer{xcb_query_pointer_reply(
        connection.xcb(), xcb_query_pointer(connection.xcb(), connection.root()), nullptr)};
    if (!pointer || pointer->child == XCB_NONE || isPartOfDesktop(connection, pointer->child))
        return false;
    constexpr int deepestFrame = 2;
    const xcb_window_t managed = managedIn(connection, pointer->child, deepestFrame);
    if (managed != XCB_NONE)
        return !takesKeyboard(connection, managed) && !isPartOfDesktop(connection, managed);
    return isUnmanagedAid(connection, pointer->child);
}

}  // namespace tralio
