#pragma once

#include <functional>
#include <vector>

#include "hotkeys/key_event_poster.h"
#include "platform/linux/keyboard/copy_shortcut.h"
#include "platform/linux/wayland/virtual_keyboard.h"

namespace tralio {

class FrontApplication;

/// Types shortcuts on a virtual keyboard, which exists only while one is pressed. Keys that the user holds
/// belong to another keyboard and need no release: events of ours carry our modifiers only.
///
/// A compositor that offers a virtual keyboard and then refuses it closes the whole connection, so the
/// keyboard has a connection of its own.
class WaylandKeyEventPoster final : public KeyEventPoster {
public:
    /// What is known of the application in front, except its application id.
    using AskTarget = std::function<CopyTarget()>;

    WaylandKeyEventPoster(
        const WaylandConnection& session, const FrontApplication& front, AskTarget askTarget);

    /// Whether the compositor offers virtual keyboards.
    [[nodiscard]] bool isGranted() const;

    /// Whether there is a shortcut that copies in the application in front. Takes some milliseconds.
    [[nodiscard]] bool canPressCopy() const;

    bool canPost() const override;
    void post(const KeyEvent& event) override;
    void postToProcess(qint32 processId, const KeyEvent& event) override;

private:
    [[nodiscard]] CopyShortcut shortcutInFront() const;
    void openKeyboard();
    void pressShortcut(KeyCode shortcutKey);
    void releaseShortcut();

    const WaylandConnection& m_session;
    const FrontApplication& m_front;
    AskTarget m_askTarget;
    std::unique_ptr<WaylandConnection> m_connection;  ///< from the first shortcut on
    std::unique_ptr<VirtualKeyboard> m_keyboard;
    std::vector<quint32> m_pressed;
};

}  // namespace tralio
