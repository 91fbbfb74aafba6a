#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "hotkeys/key_event_poster.h"
#include "platform/linux/keyboard/copy_shortcut.h"
#include "platform/linux/x11/x11_hot_keys.h"

namespace tralio {

/// Synthetic keys through the XTest extension, which applications cannot distinguish from typed ones.
///
/// A key posted with the Command flag is a shortcut, and shortcuts use Control here: Control is pressed
/// before the key and released after it. Applications go by the meaning of modifiers and letters, so the keys
/// are those with that meaning in the current layout; physical positions are used only if there is none. In a
/// terminal Control+C would interrupt what runs in it: there the shortcut is Control+Shift+C, or nothing in
/// terminals where even that does not copy. Our own hot keys let the shortcut pass.
class X11KeyEventPoster final : public KeyEventPoster {
public:
    /// Whether the element with the keyboard focus is a terminal; absent if unknown.
    using FocusIsTerminal = std::function<std::optional<bool>()>;

    X11KeyEventPoster(X11Connection& connection, X11HotKeys& hotKeys, FocusIsTerminal focusIsTerminal);

    /// The shortcut that copies in the application in front. Takes some milliseconds.
    [[nodiscard]] CopyShortcut shortcutInFront() const;

    void post(const KeyEvent& event) override;
    /// Does nothing: events sent to a single window are marked as synthetic, and most toolkits drop them.
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
    std::vector<quint8> m_shortcut;  ///< the keys that are down, in the order of their presses
};

}  // namespace tralio
