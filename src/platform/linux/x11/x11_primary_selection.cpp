#include "platform/linux/x11/x11_primary_selection.h"

#include <algorithm>
#include <xcb/xinput.h>

#include "platform/linux/keyboard/copy_shortcut.h"
#include "platform/linux/selection/current_selection.h"
#include "platform/linux/x11/selection_reader.h"
#include "platform/linux/x11/x11_workspace.h"

namespace tralio {
namespace {

constexpr quint32 leftButton = 1;

xcb_window_t primaryOwner(X11Connection& connection) {
    const XcbPtr<xcb_get_selection_owner_reply_t> reply{xcb_get_selection_owner_reply(
        connection.xcb(), xcb_get_selection_owner(connection.xcb(), XCB_ATOM_PRIMARY), nullptr)};
    return reply ? reply->owner : static_cast<xcb_window_t>(XCB_NONE);
}

}  // namespace

X11PrimarySelection::X11PrimarySelection(X11Connection& connection)
    : m_connection(connection), m_watch(connection, XCB_ATOM_PRIMARY, [this](xcb_timestamp_t time) {
          m_history.marked(time, areKeysHeld());
      }) {
    watchMouse();
}

void X11PrimarySelection::watchMouse() {
    xcb_connection_t* xcb = m_connection.xcb();
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(xcb, &xcb_input_id);
    if (!extension || !extension->present)
        return;
    // From 2.1 on raw events come whatever another program grabs.
    const XcbPtr<xcb_input_xi_query_version_reply_t> version{
        xcb_input_xi_query_version_reply(xcb, xcb_input_xi_query_version(xcb, 2, 1), nullptr)};
    if (!version || version->major_version < 2 || (version->major_version == 2 && version->minor_version < 1))
        return;
    struct {
        xcb_input_event_mask_t header;
        quint32 mask;
    } wanted{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
        XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE};
    xcb_input_xi_select_events(xcb, m_connection.root(), 1, &wanted.header);
    xcb_flush(xcb);
    m_inputExtension = extension->major_opcode;
    m_connection.addEventHandler([this](const xcb_generic_event_t& event) { mouseEvent(event); });
}

void X11PrimarySelection::mouseEvent(const xcb_generic_event_t& event) {
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    if ((event.response_type & 0x7f) != XCB_GE_GENERIC || generic.extension != m_inputExtension)
        return;
    const auto& raw = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    if (raw.detail != leftButton)
        return;
    if (generic.event_type == XCB_INPUT_RAW_BUTTON_PRESS)
        m_history.pressed(raw.time);
    else if (generic.event_type == XCB_INPUT_RAW_BUTTON_RELEASE)
        m_history.released(raw.time);
}

bool X11PrimarySelection::areKeysHeld() const {
    const XcbPtr<xcb_query_keymap_reply_t> reply{
        xcb_query_keymap_reply(m_connection.xcb(), xcb_query_keymap(m_connection.xcb()), nullptr)};
    return reply && std::any_of(std::begin(reply->keys), std::end(reply->keys), [](quint8 eightKeys) {
        return eightKeys != 0;
    });
}

bool X11PrimarySelection::ownerGivesPasswords(X11Connection& connection) {
    // Chromium, and what is built on it, shares one window for its selections under this name.
    return connection.property(primaryOwner(connection), XCB_ATOM_WM_NAME) == "Chromium clipboard";
}

bool X11PrimarySelection::frontGivesUpItself() {
    // The plain terminals do, and nothing could be asked of them by the keyboard.
    return copyShortcutIn(X11Workspace::copyTarget(m_connection, X11Workspace::activeWindow(m_connection))) ==
        CopyShortcut::none;
}

std::optional<PrimaryMark> X11PrimarySelection::markOf(qint32 processId, QDeadlineTimer deadline) {
    (void)m_watch.changeCount();  // what has happened up to now is known then
    const xcb_window_t owner = primaryOwner(m_connection);
    if (owner == XCB_NONE || m_connection.processOf(owner) != processId)
        return std::nullopt;
    auto text = readSelectionText(m_connection, XCB_ATOM_PRIMARY, deadline);
    if (!text)
        return std::nullopt;
    PrimaryMark mark{std::move(*text)};
    mark.mayBeGone = m_history.isPressedSince() && !frontGivesUpItself();
    const auto origin = m_history.origin();
    const auto marking =
        origin == MarkHistory::Origin::doubleClick ? Marking::byDoubleClick : Marking::unknown;
    mark.mayBePassword = ownerGivesPasswords(m_connection) &&
        (origin == MarkHistory::Origin::keyboard || looksLikePassword(mark.text, marking));
    return mark;
}

}  // namespace tralio
