#include "platform/linux/x11/x11_primary_selection.h"

#include <algorithm>

#include "platform/linux/keyboard/key_codes.h"
#include "platform/linux/selection/current_selection.h"
#include "platform/linux/x11/key_symbols.h"
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

/// Whether a key may change a text. Modifiers do not, nor do keys for the desktop, such as those pressed with
/// Super.
bool reachesTexts(X11Connection& connection, quint8 keyCode, quint16 held) {
    constexpr xcb_keysym_t tab = 0xff09;
    constexpr xcb_keysym_t print = 0xff61;
    constexpr xcb_keysym_t firstOfDesktop = 0x1008ff00;  // volume, brightness, …
    const KeySymbols symbols{xcb_key_symbols_alloc(connection.xcb())};
    const xcb_keysym_t symbol =
        symbols ? xcb_key_symbols_get_keysym(symbols.get(), keyCode, 0) : XCB_NO_SYMBOL;
    const bool isOfDesktop = (held & XCB_MOD_MASK_4) != 0 || symbol == print || symbol >= firstOfDesktop ||
        (symbol == tab && (held & XCB_MOD_MASK_1) != 0);
    return xcb_is_modifier_key(symbol) == 0 && !isOfDesktop;
}

}  // namespace

X11PrimarySelection::X11PrimarySelection(X11Connection& connection, X11RawInput& rawInput, Keys keys)
    : m_connection(connection),
      m_rawInput(rawInput),
      m_keys(std::move(keys)),
      m_mouse(rawInput, X11RawInput::Kind::buttonPressed | X11RawInput::Kind::buttonReleased,
          [this](const X11RawInput::Event& event) { mouseEvent(event); }),
      m_watch(connection, XCB_ATOM_PRIMARY, [this](xcb_timestamp_t time) {
          m_history.marked(time, areKeysHeld());
          m_freshUntil.setRemainingTime(freshTime);
          m_canAsk.reset();
          m_keyboard.emplace(m_rawInput, X11RawInput::Kind::keyPressed,
              [this](const X11RawInput::Event& event) { keyEvent(static_cast<quint8>(event.detail)); });
      }) {}

void X11PrimarySelection::keyEvent(quint8 keyCode) {
    const XcbPtr<xcb_query_pointer_reply_t> pointer{xcb_query_pointer_reply(
        m_connection.xcb(), xcb_query_pointer(m_connection.xcb(), m_connection.root()), nullptr)};
    const quint16 held = pointer ? pointer->mask : 0;
    if (m_keys.isHotKey(keyCode, held) || !reachesTexts(m_connection, keyCode, held) || !isOwnerInFront())
        return;
    m_history.keyPressed();
    m_keyboard.reset();
}

void X11PrimarySelection::mouseEvent(const X11RawInput::Event& event) {
    if (event.detail != leftButton)
        return;
    if (event.kind == X11RawInput::Kind::buttonPressed)
        m_history.pressed(event.time, isOverOwner());
    else
        m_history.released(event.time);
}

bool X11PrimarySelection::isOwners(xcb_window_t window) const {
    const auto process = m_connection.processOf(window);
    const auto owner = m_connection.processOf(primaryOwner(m_connection));
    return !process || !owner || process == owner;
}

bool X11PrimarySelection::isOwnerInFront() const {
    return isOwners(X11Workspace::activeWindow(m_connection));
}

bool X11PrimarySelection::isOverOwner() const {
    xcb_window_t below = m_connection.root();
    for (xcb_window_t next = below; next != XCB_NONE;) {
        below = next;
        const XcbPtr<xcb_query_pointer_reply_t> pointer{xcb_query_pointer_reply(
            m_connection.xcb(), xcb_query_pointer(m_connection.xcb(), below), nullptr)};
        next = pointer ? pointer->child : static_cast<xcb_window_t>(XCB_NONE);
    }
    return below != m_connection.root() && isOwners(below);
}

bool X11PrimarySelection::areKeysHeld() const {
    const XcbPtr<xcb_query_keymap_reply_t> reply{
        xcb_query_keymap_reply(m_connection.xcb(), xcb_query_keymap(m_connection.xcb()), nullptr)};
    if (!reply)
        return false;
    // The Command key selects nothing: it is down for a hot key.
    for (const KeyCode key : {KeyCode::leftCommand, KeyCode::rightCommand})
        if (const auto code = x11KeyCode(key))
            reply->keys[*code / 8] &= ~(1U << *code % 8);
    return std::any_of(
        std::begin(reply->keys), std::end(reply->keys), [](quint8 eightKeys) { return eightKeys != 0; });
}

bool X11PrimarySelection::ownerGivesPasswords(X11Connection& connection) {
    // Chromium, and programs based on it, use one shared window of this name for their selections.
    return connection.property(primaryOwner(connection), XCB_ATOM_WM_NAME) == "Chromium clipboard";
}

std::optional<PrimaryText> X11PrimarySelection::textOf(qint32 processId, QDeadlineTimer deadline) {
    (void)m_watch.changeCount();  // so that all changes up to now have been handled
    const xcb_window_t owner = primaryOwner(m_connection);
    if (owner == XCB_NONE || m_connection.processOf(owner) != processId)
        return std::nullopt;
    auto text = readSelectionText(m_connection, XCB_ATOM_PRIMARY, deadline);
    if (!text)
        return std::nullopt;
    PrimaryText mark{std::move(*text)};
    if (m_history.isKeyPressedSince() && !m_canAsk)
        m_canAsk = m_keys.canAsk();
    mark.mayBeGone = m_history.isPressedSince() || (m_history.isKeyPressedSince() && m_canAsk == true);
    mark.isFresh = !m_freshUntil.hasExpired();
    const auto origin = m_history.origin();
    const auto marking =
        origin == SelectionHistory::Origin::doubleClick ? Marking::byDoubleClick : Marking::unknown;
    mark.mayBePassword = ownerGivesPasswords(m_connection) &&
        (origin == SelectionHistory::Origin::keyboard || looksLikePassword(mark.text, marking));
    return mark;
}

}  // namespace tralio
