#pragma once

#include <QtGlobal>

#include <functional>
#include <optional>

namespace tralio {

/// Tells one hot key of a program from another; travels with every press.
struct HotKeyID {
    quint32 signature = 0;  ///< a four-character code
    quint32 id = 0;

    bool operator==(const HotKeyID&) const = default;
};

enum class HotKeyRef : quint64 {};
enum class EventHandlerRef : quint64 {};

/// The outcome of a registration. Zero is success; the rest are the platform's own numbers.
using HotKeyStatus = qint32;

/// The platform's hot-key service. Key codes are virtual key codes (physical positions), modifiers the
/// hot-key mask: Command 256, Shift 512, Option 2048, Control 4096. Used from the main thread.
class HotKeyPlatform {
public:
    /// Called for a press, on the main thread, from inside the platform's event delivery. The identifier is
    /// absent when the platform could not read it.
    using EventHandler = std::function<void(std::optional<HotKeyID>)>;

    struct Registration {
        HotKeyStatus status = 0;
        std::optional<HotKeyRef> ref;  ///< present on success
    };

    HotKeyPlatform() = default;
    HotKeyPlatform(const HotKeyPlatform&) = delete;
    HotKeyPlatform& operator=(const HotKeyPlatform&) = delete;
    virtual ~HotKeyPlatform() = default;

    virtual EventHandlerRef installEventHandler(EventHandler handler) = 0;
    [[nodiscard]] virtual Registration registerHotKey(quint32 keyCode, quint32 modifiers, HotKeyID id) = 0;
    virtual void unregisterHotKey(HotKeyRef ref) = 0;
};

}  // namespace tralio
