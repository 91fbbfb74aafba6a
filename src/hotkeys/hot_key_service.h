#pragma once

#include "hotkeys/apple_script.h"
#include "hotkeys/hot_keys.h"
#include "hotkeys/permission_requests.h"
#include "hotkeys/selected_text_fetch.h"
#include "state/hot_key_registrar.h"

namespace tralio {

/// The facade for the two system-wide hot keys, the selected text of the application in front, and the
/// permissions that both need; each is implemented by a class of its own. Used from the main thread, where
/// every callback runs, too.
///
/// Its numbers are those of KeyCode, of Modifier and, as `flags`, of the modifiers in key events.
class HotKeyService final : public HotKeyRegistrar {
public:
    /// The desktop services that it uses. All of them outlive it.
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

    using Action = HotKeys::Action;
    using TextCompletion = SelectedTextFetch::Completion;

    explicit HotKeyService(Platform platform);

    // Hot keys
    [[nodiscard]] HotKeys& keys() { return m_keys; }
    /// Documented in HotKeys.
    void registerGlobalHotKeys(quint32 textKeyCode, quint32 textModifiers, Action onText, quint32 ocrKeyCode,
        quint32 ocrModifiers, Action onOCR);
    void updateTextHotKey(quint32 keyCode, quint32 modifiers) override;
    void updateOCRHotKey(quint32 keyCode, quint32 modifiers) override;
    [[nodiscard]] static quint32 carbonModifiers(quint32 flags);
    [[nodiscard]] static QString readableShortcut(quint16 keyCode, quint32 flags);

    // Selected text: documented in SelectedTextFetch.
    void fetchSelectedText(TextCompletion completion);
    [[nodiscard]] SelectedTextFetch::Obstacle obstacle() const { return m_selection.obstacle(); }
    [[nodiscard]] std::optional<QString> getDirectAXSelectedText(qint32 pid);
    [[nodiscard]] static bool isBrowser(const QString& bundleId);
    [[nodiscard]] std::optional<QString> getBrowserSelectedText(const QString& bundleId);
    bool triggerCopyMenuAction(qint32 pid);

    // Permissions: documented in PermissionRequests.
    [[nodiscard]] bool isAccessibilityGranted() const;
    void requestAccessibility();
    [[nodiscard]] bool isScreenCaptureGranted() const;
    void requestScreenCapture();

private:
    HotKeys m_keys;
    SelectedTextFetch m_selection;
    PermissionRequests m_permissions;
};

}  // namespace tralio
