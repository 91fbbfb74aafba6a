#pragma once

#include <functional>
#include <optional>

#include "platform/linux/selection/primary_selection.h"
#include "platform/linux/selection/selection_history.h"
#include "platform/linux/x11/x11_raw_input.h"
#include "platform/linux/x11/x11_selection_watch.h"

namespace tralio {

/// PRIMARY of an X session, with the history of the mark from the raw events of the left mouse button and of
/// keys, which reach us whichever window has the pointer and the focus. Keys are listened to from a mark to
/// the first that speaks against it, and not after that. Without XInput 2.2 every mark counts as made by the
/// keyboard, and as still there.
class X11PrimarySelection final : public PrimarySelection {
public:
    struct Keys {
        /// Whether a key, by its X code, means a hot key with these modifiers held, the bits of an event's
        /// state.
        std::function<bool(quint8 keyCode, quint16 held)> isHotKey;
        /// Whether the application in front could be asked what is marked, by Control+C. Asked once a key
        /// speaks against the mark; in terminals no key does.
        std::function<bool()> canAsk;
    };

    X11PrimarySelection(X11Connection& connection, X11RawInput& rawInput, Keys keys);

    std::optional<PrimaryText> textOf(qint32 processId, QDeadlineTimer deadline) override;

    /// Whether the owner of PRIMARY is of those that give out passwords there.
    [[nodiscard]] static bool ownerGivesPasswords(X11Connection& connection);

private:
    void mouseEvent(const X11RawInput::Event& event);
    void keyEvent(quint8 keyCode);
    /// Whether a window is of the application that owns PRIMARY, as far as can be told.
    [[nodiscard]] bool isOwners(xcb_window_t window) const;
    [[nodiscard]] bool isOwnerInFront() const;
    /// Whether the pointer is over a window of the application that owns PRIMARY, as far as can be told: a
    /// panel's menu, the frame of a window and the bare screen leave a mark alone.
    [[nodiscard]] bool isOverOwner() const;
    [[nodiscard]] bool areKeysHeld() const;

    X11Connection& m_connection;
    SelectionHistory m_history;
    X11RawInput& m_rawInput;
    Keys m_keys;
    X11RawInput::Listener m_mouse;
    std::optional<X11RawInput::Listener> m_keyboard;  ///< from a mark to the first key
    QDeadlineTimer m_freshUntil;
    std::optional<bool> m_canAsk;  ///< of the application with this mark
    X11SelectionWatch m_watch;
};

}  // namespace tralio
