#pragma once

#include "hotkeys/keys.h"

namespace tralio {

/// A synthetic key event.
struct KeyEvent {
    KeyCode key{};
    bool isKeyDown = false;
    Modifiers modifiers{};

    bool operator==(const KeyEvent&) const = default;
};

/// Sends synthetic key events, as if typed on the keyboard. An event that cannot be created is skipped. Used
/// from the main thread.
class KeyEventPoster {
public:
    KeyEventPoster() = default;
    KeyEventPoster(const KeyEventPoster&) = delete;
    KeyEventPoster& operator=(const KeyEventPoster&) = delete;
    virtual ~KeyEventPoster() = default;

    /// Whether events can be sent at all: not every session lets programs type.
    [[nodiscard]] virtual bool canPost() const { return true; }

    virtual void post(const KeyEvent& event) = 0;

    /// Sends an event to one program only, whichever has the focus; does nothing on platforms without such
    /// events.
    virtual void postToProcess(qint32 processId, const KeyEvent& event) = 0;
};

}  // namespace tralio
