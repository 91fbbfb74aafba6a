#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <vector>

#include "hotkeys/hot_key_platform.h"
#include "platform/linux/x11/modifier_map.h"
#include "platform/linux/x11/x11_key_grabs.h"
#include "platform/linux/x11/x11_raw_input.h"

namespace tralio {

/// Hot keys as passive key grabs on the root window. Each is grabbed in every state of the locks, and grabbed
/// again when the modifiers are mapped to other keys.
///
/// A grab that fires takes the whole keyboard, so it is released as soon as the press has been read:
/// otherwise synthetic keys would come back to us instead of reaching the application in front. Until the key
/// has been released it stays grabbed with any modifiers: its repeats are not presses, and once the modifiers
/// have been released for a synthetic shortcut they would be typed over the user's selection.
class X11HotKeys final : public HotKeyPlatform {
public:
    X11HotKeys(X11Connection& connection, X11RawInput& rawInput);

    EventHandlerRef installEventHandler(EventHandler handler) override;
    void installStatusHandler(StatusHandler handler) override;
    Registration registerHotKey(const KeyCombination& combination, HotKeyID id) override;
    void unregisterHotKey(HotKeyRef ref) override;

    /// Whether a key is a hot key while these modifiers are held, which are bits of an event's state.
    [[nodiscard]] bool isHotKey(quint8 keyCode, quint16 held) const;

    /// Releases our grabs so that a synthetic combination pressed right after this reaches the application
    /// in front, even if it is one of our hot keys or uses the held key. Returns whether the key is down and
    /// so must be released synthetically first.
    [[nodiscard]] bool letPass(quint8 keyCode, Modifiers modifiers);
    /// Call after that combination has been released.
    void endPass();

    /// Call before modifiers are released synthetically. Returns those that the server takes for held, as
    /// bits of an event's state.
    [[nodiscard]] quint16 beginFeignedRelease();
    /// Call after the synthetic release, with what `beginFeignedRelease` returned. The user still holds
    /// those modifiers: until a key is really released, another tap of the hot key's key means the hot key,
    /// and without a grab it would type over the selection.
    void endFeignedRelease(quint16 held);
    /// Call for each key that is released synthetically, with the number of that request.
    void noteFeignedRelease(quint8 keyCode, unsigned request) {
        m_rawInput.passOverOwnRelease(keyCode, request);
    }

private:
    struct HotKey {
        HotKeyRef ref{};
        HotKeyID id;
        quint8 keyCode = 0;  ///< X key code
        Modifiers modifiers;
    };
    /// A combination that is not grabbed for the moment.
    struct Pass {
        quint8 keyCode = 0;
        Modifiers modifiers;
        bool releasesHeldKey = false;
    };

    void handle(const xcb_generic_event_t& event);
    void hold(quint8 keyCode);
    void grabHeldKey();
    void press(const xcb_key_press_event_t& event);
    [[nodiscard]] bool isDown(quint8 keyCode) const;
    void watchForRelease();
    void letGo();
    void grabTaps(const HotKey& hotKey);
    void endTaps();
    void giveUpTaps();
    [[nodiscard]] quint16 heldModifiers() const;
    void remapKeyboard();
    [[nodiscard]] std::vector<quint16> statesOf(const HotKey& hotKey) const;
    [[nodiscard]] HotKeyStatus grab(const HotKey& hotKey);
    void grabAgain(const HotKey& hotKey);
    void ungrab(const HotKey& hotKey);

    X11Connection& m_connection;
    X11RawInput& m_rawInput;
    X11KeyGrabs m_grabs;
    ModifierMap m_modifiers;
    std::vector<HotKey> m_hotKeys;
    std::vector<EventHandler> m_handlers;
    StatusHandler m_statusHandler;
    quint64 m_lastRef = 0;
    std::optional<quint8> m_heldKey;  ///< pressed and not yet seen released
    std::optional<Pass> m_pass;
    QTimer m_releaseWatch;
    std::optional<X11RawInput::Listener> m_keyReleases;
    quint16 m_releasedUnderHand = 0;  ///< state bits without which hot keys count for the moment
    std::optional<X11RawInput::Listener> m_modifierReleases;
    /// Valid while the server takes the held key for released, because of our own synthetic release: then
    /// only the raw events of the keyboard can show its real release.
    QElapsedTimer m_sinceFeignedRelease;
};

}  // namespace tralio
