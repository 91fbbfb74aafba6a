#pragma once

#include <functional>
#include <optional>

#include "hotkeys/keys.h"

namespace tralio {

/// Identifies a hot key of the program; passed along with every press.
struct HotKeyID {
    quint32 signature = 0;  ///< a four-character code
    quint32 id = 0;

    bool operator==(const HotKeyID&) const = default;
};

inline constexpr quint32 hotKeySignature = 0x5452414C;  // 'TRAL'
inline constexpr HotKeyID textHotKeyID{hotKeySignature, 1};
inline constexpr HotKeyID ocrHotKeyID{hotKeySignature, 2};

enum class HotKeyRef : quint64 {};
enum class EventHandlerRef : quint64 {};

/// The outcome of a registration. The log shows the number.
enum class HotKeyStatus : qint32 {
    registered = 0,
    unavailable = -1,  ///< the session has no hot keys, or not yet
    refused = -2,      ///< the desktop or its user refused it
    taken = -9878,     ///< another program, or the other hot key of this one, has it
    invalid = -9879    ///< no such key on this keyboard, or one that cannot be a hot key
};

/// Whether another combination might work. If the session has no hot keys, none would.
[[nodiscard]] constexpr bool isTurnedDown(HotKeyStatus status) {
    return status != HotKeyStatus::registered && status != HotKeyStatus::unavailable;
}

/// The platform's hot-key service. Used from the main thread.
class HotKeyPlatform {
public:
    /// Called for a press, on the main thread, from within the platform's event delivery. The id is absent if
    /// the platform could not read it.
    using EventHandler = std::function<void(std::optional<HotKeyID>)>;

    /// Called on the main thread when the outcome of a registration becomes known, or changes later.
    using StatusHandler = std::function<void(HotKeyID, HotKeyStatus)>;

    struct Registration {
        HotKeyStatus status = HotKeyStatus::registered;
        std::optional<HotKeyRef> ref;  ///< present on success
    };

    HotKeyPlatform() = default;
    HotKeyPlatform(const HotKeyPlatform&) = delete;
    HotKeyPlatform& operator=(const HotKeyPlatform&) = delete;
    virtual ~HotKeyPlatform() = default;

    virtual EventHandlerRef installEventHandler(EventHandler handler) = 0;
    virtual void installStatusHandler(StatusHandler handler) = 0;
    [[nodiscard]] virtual Registration registerHotKey(const KeyCombination& combination, HotKeyID id) = 0;
    virtual void unregisterHotKey(HotKeyRef ref) = 0;

    /// Whether the desktop is showing its user a dialog about hot keys.
    [[nodiscard]] virtual bool isUserAsked() const { return false; }
};

}  // namespace tralio
