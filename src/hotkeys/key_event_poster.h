#pragma once

#include <QtGlobal>

namespace tralio {

/// A synthetic key event. The key code is a virtual key code; the flags are those of key events (Command is
/// 0x100000), not those of hot keys.
struct KeyEvent {
    quint16 keyCode = 0;
    bool isKeyDown = false;
    quint32 flags = 0;

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
