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

/// The tab with this raw value, if there is one.
[[nodiscard]] std::optional<AppTab> appTab(int rawValue);

/// The main view without its widgets: the visible tab, the translate panel's input, the permissions as they
/// are shown, and whether the walk-through lies over all that. Lives as long as the popover's content. Used
/// from the main thread.
class MainState final : public ObservableObject {
    Q_OBJECT

    PersistedGroup m_persisted;

public:
    /// What the view works with. All of it outlives the view.
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
    /// Which permission is missing; absent when none is.
    [[nodiscard]] std::optional<QString> ungrantedWarningText() const;
    [[nodiscard]] bool isOnboardingShown() const;

    // Events

    /// The user sees the view, after not having seen it.
    void appear();

    // Actions

    /// Takes an entry's source text as the input of the translate panel, without translating it.
    void select(const TranslationItem& item);
    void finishOnboarding();
    /// Takes the offer of a new version away; the next successful check may bring it back.
    void dismissUpdate();

private:
    Dependencies m_needs;
};

}  // namespace tralio
