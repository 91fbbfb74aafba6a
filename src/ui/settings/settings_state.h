#pragma once

#include <qcorotask.h>

#include <memory>
#include <optional>
#include <stop_token>

#include "common/clock.h"
#include "common/observable_object.h"
#include "engine/provider_preset.h"
#include "hotkeys/hot_key_service.h"
#include "ui/settings/hot_key_preset_item.h"
#include "ui/settings/key_down_monitor.h"

namespace tralio {

class AIService;
class AppSettings;
class AppState;
class Pasteboard;
class PermissionWatch;
class UndoOffer;
class UpdateService;

/// The hot key whose shortcut is being recorded.
enum class HotKeyRecordTarget { textSelection, screenOCR };

/// The state of the settings panel. Changes go to the settings at once; only the result of a connection test,
/// whether the key is visible, and the recording of a shortcut are kept here. Main thread only.
class SettingsState final : public ObservableObject {
    Q_OBJECT

public:
    /// What the panel uses. All of it outlives the panel.
    struct Dependencies {
        AppSettings& settings;
        HotKeyService& hotKeys;
        AIService& ai;
        UpdateService& updates;
        AppState& appState;
        Pasteboard& pasteboard;
        PermissionWatch& permissions;
        UndoOffer& undo;
        Clock& clock;
        KeyDownMonitor::KeyCodes keyCodes;
        bool isClipboardChecked;  ///< by the shell, until the program ends
        std::function<void()> openGuide;
    };

    explicit SettingsState(Dependencies needs);
    ~SettingsState() override;

    // State

    Observable<bool> isShowingAPIKey{*this, false};
    Observable<bool> isTesting{*this, false};
    Observable<std::optional<QString>> testResult{*this};
    Observable<bool> isSuccess{*this, false};
    Observable<std::optional<HotKeyRecordTarget>> recordingTarget{*this};

    [[nodiscard]] bool isAccessibilityGranted() const;
    [[nodiscard]] bool isScreenCaptureGranted() const;
    [[nodiscard]] AppSettings& settings() { return m_needs.settings; }
    [[nodiscard]] Pasteboard& pasteboard() { return m_needs.pasteboard; }
    [[nodiscard]] UpdateService& updateService() { return m_needs.updates; }

    /// The presets of a hot key, and the text of its present shortcut.
    [[nodiscard]] static const QList<HotKeyPresetItem>& presets(HotKeyRecordTarget target);
    [[nodiscard]] const QString& display(HotKeyRecordTarget target) const;

    /// Why the hot key does not work, as an error message; absent if it works. `HotKeyService::keys()`
    /// reports changes.
    [[nodiscard]] std::optional<QString> hotKeyTrouble(HotKeyRecordTarget target) const;
    [[nodiscard]] HotKeys& hotKeys() { return m_needs.hotKeys.keys(); }

    /// The selected preset; null if the stored name is none.
    [[nodiscard]] const ProviderPreset* selectedProvider() const;
    /// Whether the maker's gateway is selected, whose endpoint and key the user cannot edit.
    [[nodiscard]] bool usesOwnGateway() const;

    /// Whether the clipboard check has been turned on or off for the next start.
    [[nodiscard]] bool isClipboardCheckChanged() const;

    /// Progress of the update's download in whole percent.
    [[nodiscard]] int downloadPercentage() const;

    // Events

    void panelAppeared();
    void panelDisappeared();

    // Actions

    /// Records the next combination that is pressed for `target`; ends a recording already running. Escape
    /// ends it without a change, and combinations without Control, Option or Command are ignored.
    void startRecording(HotKeyRecordTarget target);
    void stopRecording();
    void toggleRecording(HotKeyRecordTarget target);
    void chooseHotKey(HotKeyRecordTarget target, const HotKeyPresetItem& preset);

    void chooseProvider(const QString& presetId);
    void runTestConnection();
    /// Can be undone for a while.
    void restoreDefaults();
    void resetPrompt();

    void requestAccessibility();
    void requestScreenCapture();
    void showOnboarding();
    void openGuide();

private:
    struct Shortcut {
        KeyCombination combination;
        QString display;
    };

    bool keyWentDown(HotKeyRecordTarget target, const KeyCombination& pressed);
    /// Stores the shortcut and ends the recording, on the next turn of the event loop.
    void recorded(HotKeyRecordTarget target, const Shortcut& shortcut);
    /// Registered hot keys do not arrive as key events, since the desktop takes them first.
    void hotKeyPressed(HotKeyRecordTarget target, HotKeyID id);
    void save(HotKeyRecordTarget target, const Shortcut& shortcut);
    QCoro::Task<void> testConnection(std::stop_token stop);

    Dependencies m_needs;
    std::unique_ptr<KeyDownMonitor> m_localEventMonitor;
    std::unique_ptr<HotKeys::Interception> m_interception;
    std::stop_source m_test;
};

}  // namespace tralio
