#pragma once

#include <QString>

#include <optional>

#include "common/observable_object.h"

namespace tralio {

class AppState;
class Clock;
class HotKeyService;

enum class AppTab { translate, history, settings, author };

/// The tab with this raw value, if there is one.
[[nodiscard]] std::optional<AppTab> appTab(int rawValue);

/// The main view without its widgets: the visible tab, the translate panel's input, and the permissions as
/// they are shown. Lives as long as the popover's content. Used from the main thread.
class MainState final : public ObservableObject {
    Q_OBJECT

public:
    MainState(AppState& appState, HotKeyService& hotKeys, Clock& clock);

    // State

    Observable<AppTab> selectedTab{*this, AppTab::translate};
    Observable<QString> textToTranslate{*this};
    Observable<bool> isAccessibilityGranted;
    Observable<bool> isScreenCaptureGranted;

    /// Which permission is missing; absent when none is.
    [[nodiscard]] std::optional<QString> ungrantedWarningText() const;

    // Actions

    /// Reads both permissions; announces only what has changed.
    void checkPermissions();

private:
    HotKeyService& m_hotKeys;
};

}  // namespace tralio
