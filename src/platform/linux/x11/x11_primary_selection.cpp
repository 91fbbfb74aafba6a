#include "platform/linux/x11/x11_primary_selection.h"

#include "platform/linux/x11/selection_reader.h"

namespace tralio {

X11PrimarySelection::X11PrimarySelection(X11Connection& connection) : m_connection(connection) {}

std::optional<QString> X11PrimarySelection::textOf(qint32 processId, QDeadlineTimer deadline) {
    const XcbPtr<xcb_get_selection_owner_reply_t> reply{xcb_get_selection_owner_reply(
        m_connection.xcb(), xcb_get_selection_owner(m_connection.xcb(), XCB_ATOM_PRIMARY), nullptr)};
    if (!reply || reply->owner == XCB_NONE || m_connection.processOf(reply->owner) != processId)
        return std::nullopt;
    return readSelectionText(m_connection, XCB_ATOM_PRIMARY, deadline);
}

}  // namespace tralio
