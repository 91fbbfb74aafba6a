#pragma once

#include <vector>

#include "hotkeys/key_event_poster.h"
#include "platform/linux/wayland/virtual_keyboard.h"

namespace tralio {

class FrontApplication;

/// Types shortcuts on a virtual keyboard, which is there only while one is pressed. The keys that the user
/// holds are another keyboard's and need no release: what comes from ours comes with our modifiers.
class WaylandKeyEventPoster final : public KeyEventPoster {
public:
    WaylandKeyEventPoster(WaylandConnection& connection, const FrontApplication& front);

    /// Whether the compositor gives programs a keyboard.
    [[nodiscard]] bool isGranted() const;

    bool canPost() const override;
    void post(const KeyEvent& event) override;
    void postToProcess(qint32 processId, const KeyEvent& event) override;

private:
    void pressShortcut(quint16 keyCode);
    void releaseShortcut();

    WaylandConnection& m_connection;
    const FrontApplication& m_front;
    std::unique_ptr<VirtualKeyboard> m_keyboard;
    std::vector<quint32> m_pressed;
};

}  // namespace tralio
