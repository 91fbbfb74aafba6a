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

/// Sends synthetic key events, as if typed on the keyboard. An event that cannot be made is skipped. Used
/// from the main thread.
class KeyEventPoster {
public:
    KeyEventPoster() = default;
    KeyEventPoster(const KeyEventPoster&) = delete;
    KeyEventPoster& operator=(const KeyEventPoster&) = delete;
    virtual ~KeyEventPoster() = default;

    /// Whether events reach anybody: not every session lets programs type.
    [[nodiscard]] virtual bool canPost() const { return true; }

    virtual void post(const KeyEvent& event) = 0;

    /// To one program only, whoever has the focus; where the platform knows no such thing, to nobody.
    virtual void postToProcess(qint32 processId, const KeyEvent& event) = 0;
};

}  // namespace tralio
