#pragma once

#include <QObject>

#include <chrono>
#include <functional>
#include <optional>

#include "hotkeys/hot_key_platform.h"
#include "state/hot_key_registrar.h"

namespace tralio {

class Accessibility;
class Clock;
class KeyEventPoster;
class Pasteboard;
class Permissions;
class ScriptRunner;
class Workspace;

/// The two system-wide hot keys, the selected text of the application in front, and the permissions that both
/// need. Used from the main thread; every callback runs there too.
///
/// Modifiers come in two forms: the flags of key events (Command 0x100000, Shift 0x20000, Option 0x80000,
/// Control 0x40000) and the mask of hot keys (256, 512, 2048, 4096).
class HotKeyService final : public QObject, public HotKeyRegistrar {
public:
    /// What the service asks of the desktop. All of it outlives the service.
    struct Platform {
        HotKeyPlatform& hotKeys;
        Workspace& workspace;
        Accessibility& accessibility;
        ScriptRunner& scripts;
        Pasteboard& pasteboard;
        KeyEventPoster& keyEvents;
        Permissions& permissions;
        Clock& clock;
    };

    using Action = std::function<void()>;
    using TextCompletion = std::function<void(std::optional<QString>)>;

    explicit HotKeyService(Platform platform);

    // Hot keys

    /// Called once, at launch. The actions run from the event loop after the press has been dealt with.
    void registerGlobalHotKeys(quint32 textKeyCode, quint32 textModifiers, Action onTextTrigger,
        quint32 ocrKeyCode, quint32 ocrModifiers, Action onOCRTrigger);

    /// Replaces a registration. The old one is gone even when the new one is refused, which only the log
    /// tells.
    void updateTextHotKey(quint32 keyCode, quint32 modifiers) override;
    void updateOCRHotKey(quint32 keyCode, quint32 modifiers) override;

    [[nodiscard]] static quint32 carbonModifiers(quint32 flags);
    [[nodiscard]] static QString readableShortcut(quint16 keyCode, quint32 flags);

    Action onTextTrigger;
    Action onOCRTrigger;

    // Selected text

    /// Tries four layers, each only when the ones before gave nothing: the focused element's selection, a
    /// browser script, the application's own Copy menu item, and a synthetic copy shortcut. The last two
    /// leave the selection on the clipboard. The completion is called exactly once, before this returns when
    /// one of the first two layers answers.
    void fetchSelectedText(TextCompletion completion);

    [[nodiscard]] std::optional<QString> getDirectAXSelectedText(qint32 pid);
    [[nodiscard]] static bool isBrowser(const QString& bundleId);
    [[nodiscard]] std::optional<QString> getBrowserSelectedText(const QString& bundleId);

    /// Whether a Copy item was found and pressed.
    bool triggerCopyMenuAction(qint32 pid);

    // Permissions

    [[nodiscard]] bool isAccessibilityGranted() const;
    void requestAccessibility();
    [[nodiscard]] bool isScreenCaptureGranted() const;
    void requestScreenCapture();

private:
    /// How the log lines of one hot key begin.
    struct RegistrationLog {
        QStringView refused;
        QStringView registered;
    };

    void handlePress(std::optional<HotKeyID> id);
    void reRegister(
        std::optional<HotKeyRef>& ref, HotKeyID id, quint32 keyCode, quint32 modifiers, RegistrationLog log);

    void executeKeystrokeCopy(qint32 pid, qint64 initialCount, const TextCompletion& completion);
    void pressCopyShortcut(qint32 pid);
    void waitForPasteboardChange(
        qint64 initialCount, std::chrono::milliseconds maxWait, TextCompletion completion);

    Platform m_platform;
    std::optional<HotKeyRef> m_textHotKeyRef;
    std::optional<HotKeyRef> m_ocrHotKeyRef;
    std::optional<EventHandlerRef> m_eventHandler;
};

}  // namespace tralio
