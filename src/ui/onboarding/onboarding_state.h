#pragma once

#include <functional>

#include "common/observable_object.h"

namespace tralio {

class AppSettings;
class HotKeyService;
class PermissionWatch;

/// The state of the walk-through: the visible page, both permissions as they are, and the shortcuts in use.
/// Made anew for each walk-through. Changes no settings. Main thread only.
class OnboardingState final : public ObservableObject {
    Q_OBJECT

public:
    static constexpr int totalSteps = 4;

    /// What the walk-through uses. All of it outlives the walk-through.
    struct Dependencies {
        HotKeyService& hotKeys;
        PermissionWatch& permissions;
        AppSettings& settings;
    };

    /// `onFinished` runs when the user reaches the end or skips the rest.
    OnboardingState(Dependencies needs, std::function<void()> onFinished);

    // State

    Observable<int> currentStep{*this, 0};

    [[nodiscard]] bool isAccessibilityGranted() const;
    [[nodiscard]] bool isScreenCaptureGranted() const;
    /// The shortcuts in use; the pages' own text names the original defaults.
    [[nodiscard]] QString shortcutsOfThisMachine() const;
    [[nodiscard]] bool isFirstStep() const { return currentStep() == 0; }
    [[nodiscard]] bool isLastStep() const { return currentStep() == totalSteps - 1; }

    // Actions

    // Does nothing on the last page: a second press may come before the button has gone.
    void next();
    void back();
    void finish();
    void checkPermissions();
    void requestAccessibility();
    void requestScreenCapture();

private:
    Dependencies m_needs;
    std::function<void()> m_onFinished;
};

}  // namespace tralio
