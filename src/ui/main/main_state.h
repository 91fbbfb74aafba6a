#pragma once

#include <QString>

#include <optional>

#include "common/observable_object.h"
#include "state/persisted.h"

namespace tralio {

class AppState;
class PermissionWatch;
class UpdateService;
struct TranslationItem;

enum class AppTab { translate, history, settings, author };

/// The tab with this number, if there is one.
[[nodiscard]] std::optional<AppTab> appTab(int rawValue);

/// The state of the main view: the visible tab, the input of the translate panel, the permissions as shown,
/// and whether the walk-through covers it all. Lives as long as the popover's content. Main thread only.
class MainState final : public ObservableObject {
    Q_OBJECT

    PersistedGroup m_persisted;

public:
    /// What the view uses. All of it outlives the view.
    struct Dependencies {
        KeyValueStore& store;
        AppState& appState;
        PermissionWatch& permissions;
        UpdateService& updates;
    };

    explicit MainState(Dependencies needs);

    // State

    Observable<AppTab> selectedTab{*this, AppTab::translate};
    Observable<QString> textToTranslate{*this};
    Persisted<bool> hasCompletedOnboarding{m_persisted, u"hasCompletedOnboarding", false};

    [[nodiscard]] bool isAccessibilityGranted() const;
    [[nodiscard]] bool isScreenCaptureGranted() const;
    /// The warning that names the missing permissions; absent if none is missing.
    [[nodiscard]] std::optional<QString> ungrantedWarningText() const;
    [[nodiscard]] bool isOnboardingShown() const;

    // Events

    /// The view has become visible to the user.
    void appear();

    // Actions

    /// Makes an entry's source text the input of the translate panel, without translating it.
    void select(const TranslationItem& item);
    void finishOnboarding();
    /// Hides the offer of a new version until the next successful check finds one.
    void dismissUpdate();

private:
    Dependencies m_needs;
};

}  // namespace tralio
