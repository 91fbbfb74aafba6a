#pragma once

#include <functional>
#include <optional>

#include "platform/linux/selection/primary_selection.h"
#include "platform/linux/selection/selection_history.h"
#include "platform/linux/x11/x11_raw_input.h"
#include "platform/linux/x11/x11_selection_watch.h"

namespace tralio {

/// PRIMARY of an X session, with the history of the selection. The raw events of the left mouse button and of
/// keys reach us whichever window has the pointer or the focus. Keys are listened to only from a selection to
/// the first key that may clear it. Without XInput 2.2 every selection counts as made with the keyboard, and
/// as still there.
class X11PrimarySelection final : public PrimarySelection {
public:
    struct Keys {
        /// Whether a key, by its X code, is a hot key while these modifiers are held, which are bits of an
        /// event's state.
        std::function<bool(quint8 keyCode, quint16 held)> isHotKey;
        /// Whether a Copy by Control+C could show what is selected in the application in front. Asked once a
        /// key may have cleared the selection; in terminals no key counts.
        std::function<bool()> canAsk;
    };

    X11PrimarySelection(X11Connection& connection, X11RawInput& rawInput, Keys keys);

    std::optional<PrimaryText> textOf(qint32 processId, QDeadlineTimer deadline) override;

    /// Whether the owner of PRIMARY belongs to the programs that give passwords to it.
    [[nodiscard]] static bool ownerGivesPasswords(X11Connection& connection);

private:
    void mouseEvent(const X11RawInput::Event& event);
    void keyEvent(quint8 keyCode);
    /// Whether a window belongs to the application that owns PRIMARY. True if that is unknown.
    [[nodiscard]] bool isOwners(xcb_window_t window) const;
    [[nodiscard]] bool isOwnerInFront() const;
    /// Whether the pointer is over a window of the application that owns PRIMARY (true if that is unknown).
    /// Clicks on a panel's menu, the frame of a window or the desktop do not clear a selection.
    [[nodiscard]] bool isOverOwner() const;
    [[nodiscard]] bool areKeysHeld() const;

    X11Connection& m_connection;
    SelectionHistory m_history;
    X11RawInput& m_rawInput;
    Keys m_keys;
    X11RawInput::Listener m_mouse;
    std::optional<X11RawInput::Listener> m_keyboard;  ///< from a selection to the first key that may clear it
    QDeadlineTimer m_freshUntil;
    std::optional<bool> m_canAsk;  ///< for the application with the present selection, once asked
    X11SelectionWatch m_watch;
};

}  // namespace tralio
