#pragma once

#include "hotkeys/key_event_poster.h"
#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// Synthetic keys through the XTest extension, which applications cannot tell from typed ones.
///
/// A key posted with the Command flag is a shortcut, and shortcuts are Control here: Control goes down before
/// the key and up after it. Applications know shortcuts by the letter, so the key is the one that types the
/// letter on the present layout, and the physical position only where no key types it. In a terminal
/// Control+C would interrupt what runs in it: there the shortcut is Control+Shift+C, or nothing where even
/// that is not copying.
class X11KeyEventPoster final : public KeyEventPoster {
public:
    explicit X11KeyEventPoster(X11Connection& connection);

    void post(const KeyEvent& event) override;
    /// Does nothing: events sent to one window are marked as such, and most toolkits drop them.
    void postToProcess(qint32 processId, const KeyEvent& event) override;

private:
    void postShortcut(const KeyEvent& event);
    void fake(quint8 type, quint8 keyCode);
    [[nodiscard]] std::optional<quint8> shortcutKey(quint16 virtualKeyCode) const;

    X11Connection& m_connection;
};

}  // namespace tralio
