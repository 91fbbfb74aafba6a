#include "platform/linux/x11/x11_selection_watch.h"

#include <utility>
#include <xcb/xfixes.h>

namespace tralio {

X11SelectionWatch::X11SelectionWatch(X11Connection& connection, xcb_atom_t selection, Changed changed)
    : m_connection(connection) {
    xcb_connection_t* xcb = m_connection.xcb();
    const xcb_query_extension_reply_t* fixes = xcb_get_extension_data(xcb, &xcb_xfixes_id);
    if (!fixes || !fixes->present)
        return;
    const XcbPtr<xcb_xfixes_query_version_reply_t> version{
        xcb_xfixes_query_version_reply(xcb, xcb_xfixes_query_version(xcb, 1, 0), nullptr)};
    xcb_xfixes_select_selection_input(xcb, m_connection.window(), selection,
        XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
            XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
            XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    m_connection.addEventHandler([this, selection, changed = std::move(changed),
                                     firstEvent = fixes->first_event](const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7f) != firstEvent + XCB_XFIXES_SELECTION_NOTIFY)
            return;
        const auto& notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
        if (notify.selection != selection)
            return;
        ++m_changeCount;
        if (changed)
            changed(notify.timestamp);
    });
}

qint64 X11SelectionWatch::changeCount() {
    m_connection.sync();  // so that all changes made up to now have been reported
    m_connection.dispatchPending();
    return m_changeCount;
}

}  // namespace tralio
