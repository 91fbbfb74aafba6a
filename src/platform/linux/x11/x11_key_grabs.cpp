#include "platform/linux/x11/x11_key_grabs.h"

namespace tralio {

bool X11KeyGrabs::take(quint8 keyCode, const std::vector<quint16>& states) {
    std::vector<xcb_void_cookie_t> requests;
    requests.reserve(states.size());
    for (const quint16 state : states)
        requests.push_back(xcb_grab_key_checked(m_connection.xcb(), 1, m_connection.root(), state, keyCode,
            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    bool isWhole = true;
    for (const xcb_void_cookie_t request : requests) {
        const XcbPtr<xcb_generic_error_t> refused{xcb_request_check(m_connection.xcb(), request)};
        isWhole = isWhole && refused == nullptr;
    }
    return isWhole;
}

void X11KeyGrabs::giveUp(quint8 keyCode, const std::vector<quint16>& states) {
    for (const quint16 state : states)
        xcb_ungrab_key(m_connection.xcb(), keyCode, m_connection.root(), state);
    xcb_flush(m_connection.xcb());
}

}  // namespace tralio
