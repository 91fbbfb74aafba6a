#pragma once

#include <QObject>

#include <functional>
#include <optional>

#include "hotkeys/hot_key_platform.h"

namespace tralio {

class Clock;

/// The two system-wide hot keys: their registrations and what a press does. Used from the main thread.
class HotKeys final : public QObject {
public:
    using Action = std::function<void()>;

    /// Both outlive this object.
    HotKeys(HotKeyPlatform& platform, Clock& clock);

    /// Called once, at launch. The actions run from the event loop after the press has been dealt with.
    void registerBoth(
        const KeyCombination& text, Action onTextTrigger, const KeyCombination& ocr, Action onOCRTrigger);

    /// Replaces a registration. The old one is gone even when the new one is refused, which only the log
    /// tells.
    void updateText(const KeyCombination& combination);
    void updateOCR(const KeyCombination& combination);

    Action onTextTrigger;
    Action onOCRTrigger;

private:
    /// How the log lines of one hot key begin.
    struct RegistrationLog {
        QStringView refused;
        QStringView registered;
    };

    void handlePress(std::optional<HotKeyID> id);
    void reRegister(
        std::optional<HotKeyRef>& ref, HotKeyID id, const KeyCombination& combination, RegistrationLog log);

    HotKeyPlatform& m_platform;
    Clock& m_clock;
    std::optional<HotKeyRef> m_textRef;
    std::optional<HotKeyRef> m_ocrRef;
    std::optional<EventHandlerRef> m_eventHandler;
};

}  // namespace tralio
