#pragma once

#include <functional>
#include <optional>

#include "common/observable_object.h"
#include "hotkeys/hot_key_platform.h"

namespace tralio {

class Clock;

/// The two system-wide hot keys: their registrations, the outcome, and the actions of a press. Used from the
/// main thread.
class HotKeys final : public ObservableObject {
    Q_OBJECT

public:
    using Action = std::function<void()>;

    /// Both outlive this object.
    HotKeys(HotKeyPlatform& platform, Clock& clock);

    /// Called once, at launch. The actions run from the event loop, after the press has been handled.
    void registerBoth(
        const KeyCombination& text, Action onTextTrigger, const KeyCombination& ocr, Action onOCRTrigger);

    /// Replaces a registration. The old one is gone even if the new one is refused. If the other hot key was
    /// refused the combination that this one gives up, it gets it now.
    void updateText(const KeyCombination& combination);
    void updateOCR(const KeyCombination& combination);

    /// The outcome of the registrations. The desktop may withdraw one or change its decision at any time.
    Observable<HotKeyStatus> textStatus{*this, HotKeyStatus::registered};
    Observable<HotKeyStatus> ocrStatus{*this, HotKeyStatus::registered};

    Action onTextTrigger;
    Action onOCRTrigger;

    [[nodiscard]] bool isUserAsked() const { return m_platform.isUserAsked(); }

    /// While it exists, presses are passed to `handler` instead of the actions. Only one may exist at a time.
    class Interception final {
    public:
        Interception(HotKeys& keys, std::function<void(HotKeyID)> handler);
        Interception(const Interception&) = delete;
        Interception& operator=(const Interception&) = delete;
        ~Interception();

    private:
        HotKeys& m_keys;
    };

private:
    struct HotKey {
        HotKeyID id;
        QStringView name;                             ///< for the log
        std::optional<KeyCombination> combination{};  ///< the wanted one, whether it is registered or not
        std::optional<HotKeyRef> ref{};
    };

    void handlePress(std::optional<HotKeyID> id);
    void setStatus(HotKeyID id, HotKeyStatus status);
    void reRegister(HotKey& hotKey, HotKey& other, const KeyCombination& combination);
    void registerNow(HotKey& hotKey);

    HotKeyPlatform& m_platform;
    Clock& m_clock;
    HotKey m_text{textHotKeyID, u"Text"};
    HotKey m_ocr{ocrHotKeyID, u"OCR"};
    std::optional<EventHandlerRef> m_eventHandler;
    std::function<void(HotKeyID)> m_interceptor;
};

}  // namespace tralio
