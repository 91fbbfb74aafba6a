#pragma once

#include <QTimer>

#include <vector>

#include "hotkeys/hot_key_platform.h"
#include "platform/linux/x11/modifier_map.h"
#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// Hot keys as passive key grabs on the root window, taken for every state of the locks and taken anew when
/// the keyboard is mapped otherwise.
///
/// A grab that fired holds the whole keyboard, so it is let go as soon as the press has been read: otherwise
/// synthetic keys would come back to us instead of reaching the application in front. Until the key has been
/// released it is ours with any modifiers: its repeats are no presses, and once the modifiers have been
/// released for a synthetic shortcut they would be typed over the user's selection.
class X11HotKeys final : public HotKeyPlatform {
public:
    explicit X11HotKeys(X11Connection& connection);

    EventHandlerRef installEventHandler(EventHandler handler) override;
    Registration registerHotKey(const KeyCombination& combination, HotKeyID id) override;
    void unregisterHotKey(HotKeyRef ref) override;

private:
    struct HotKey {
        HotKeyRef ref{};
        HotKeyID id;
        quint8 keyCode = 0;  ///< X key code
        Modifiers modifiers;
    };

    void handle(const xcb_generic_event_t& event);
    void hold(quint8 keyCode);
    void press(const xcb_key_press_event_t& event);
    [[nodiscard]] bool isDown(quint8 keyCode) const;
    void watchForRelease();
    void letGo();
    void remapKeyboard();
    [[nodiscard]] HotKeyStatus grab(const HotKey& hotKey);
    void grabAgain(const HotKey& hotKey);
    void ungrab(const HotKey& hotKey);

    X11Connection& m_connection;
    ModifierMap m_modifiers;
    std::vector<HotKey> m_hotKeys;
    std::vector<EventHandler> m_handlers;
    quint64 m_lastRef = 0;
    std::optional<quint8> m_heldKey;  ///< pressed and not yet seen released
    QTimer m_releaseWatch;
};

}  // namespace tralio
