#pragma once

#include "platform/linux/selection/primary_selection.h"
#include "platform/linux/selection/selection_history.h"
#include "platform/linux/x11/x11_raw_input.h"
#include "platform/linux/x11/x11_selection_watch.h"

namespace tralio {

/// PRIMARY of an X session, with the history of the mark from the raw events of the left mouse button, which
/// reach us whichever window is below the pointer. Without XInput 2.2 every mark counts as made by the
/// keyboard, and as still there.
class X11PrimarySelection final : public PrimarySelection {
public:
    X11PrimarySelection(X11Connection& connection, X11RawInput& rawInput);

    std::optional<PrimaryText> textOf(qint32 processId, QDeadlineTimer deadline) override;

    /// Whether the owner of PRIMARY is of those that give out passwords there.
    [[nodiscard]] static bool ownerGivesPasswords(X11Connection& connection);

private:
    void mouseEvent(const X11RawInput::Event& event);
    /// Whether the pointer is over a window of the application that owns PRIMARY, as far as can be told: a
    /// panel's menu, the frame of a window and the bare screen leave a mark alone.
    [[nodiscard]] bool isOverOwner() const;
    [[nodiscard]] bool areKeysHeld() const;

    X11Connection& m_connection;
    SelectionHistory m_history;
    X11RawInput::Listener m_mouse;
    QDeadlineTimer m_freshUntil;
    X11SelectionWatch m_watch;
};

}  // namespace tralio
