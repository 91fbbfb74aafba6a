#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "hotkeys/key_event_poster.h"
#include "platform/linux/keyboard/copy_shortcut.h"
#include "platform/linux/x11/x11_hot_keys.h"

namespace tralio {

/// Synthetic keys through the XTest extension, which applications cannot tell from typed ones.
///
/// A key posted with the Command flag is a shortcut, and shortcuts are Control here: Control goes down before
/// the key and up after it. Applications know modifiers and letters by their meaning, so the keys are those
/// that have it on the present layout, and the physical positions only where no key does. In a terminal
/// Control+C would interrupt what runs in it: there the shortcut is Control+Shift+C, or nothing where even
/// that is not copying. Hot keys of ours let it pass.
class X11KeyEventPoster final : public KeyEventPoster {
public:
    /// Whether the element with the keyboard focus is a terminal; absent where nobody tells.
    using FocusIsTerminal = std::function<std::optional<bool>()>;

    X11KeyEventPoster(X11Connection& connection, X11HotKeys& hotKeys, FocusIsTerminal focusIsTerminal);

    /// What copies in the application in front. Takes some milliseconds.
    [[nodiscard]] CopyShortcut shortcutInFront() const;

    void post(const KeyEvent& event) override;
    /// Does nothing: events sent to one window are marked as such, and most toolkits drop them.
    void postToProcess(qint32 processId, const KeyEvent& event) override;

private:
    void pressShortcut(KeyCode shortcutKey);
    void releaseShortcut();
    void releaseKey(KeyCode key);
    void pressKey(KeyCode wanted);
    void fake(quint8 type, quint8 keyCode);

    X11Connection& m_connection;
    X11HotKeys& m_hotKeys;
    FocusIsTerminal m_focusIsTerminal;
    std::vector<quint8> m_shortcut;  ///< the keys that are down, in the order in which they were pressed
};

}  // namespace tralio
