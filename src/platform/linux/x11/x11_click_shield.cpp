#include "platform/linux/x11/x11_click_shield.h"

#include <array>

namespace tralio {

X11ClickShield::X11ClickShield(X11Connection& connection, WId window) : m_connection(connection) {
    xcb_connection_t* xcb = m_connection.xcb();
    const auto target = static_cast<xcb_window_t>(window);
    const auto areaAsked = xcb_get_geometry(xcb, target);
    const auto placeAsked = xcb_translate_coordinates(xcb, target, m_connection.root(), 0, 0);
    const XcbPtr<xcb_get_geometry_reply_t> area{xcb_get_geometry_reply(xcb, areaAsked, nullptr)};
    const XcbPtr<xcb_translate_coordinates_reply_t> place{
        xcb_translate_coordinates_reply(xcb, placeAsked, nullptr)};
    if (!area || !place)
        return;
    m_shield = xcb_generate_id(xcb);
    // Without an event mask the clicks would go on to the root window, and open the window manager's menus.
    const std::array<quint32, 2> values{1, XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE};
    xcb_create_window(xcb, 0, m_shield, m_connection.root(), place->dst_x, place->dst_y, area->width,
        area->height, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
        XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
    xcb_map_window(xcb, m_shield);
    m_connection.sync();  // it is there before the window is hidden
}

X11ClickShield::~X11ClickShield() {
    if (m_shield == XCB_NONE)
        return;
    xcb_destroy_window(m_connection.xcb(), m_shield);
    xcb_flush(m_connection.xcb());
}

}  // namespace tralio
