#pragma once

#include <functional>

#include "common/observable_object.h"

namespace tralio {

class AppSettings;
class HotKeyService;
class PermissionWatch;

/// The walk-through without its widgets: which page it shows, the two permissions as they are, and the
/// shortcuts of this machine. Made anew for every walk-through. Changes no settings. Used from the main
/// thread.
class OnboardingState final : public ObservableObject {
    Q_OBJECT

public:
    static constexpr int totalSteps = 4;

    /// What the walk-through works with. All of it outlives it.
    struct Dependencies {
        HotKeyService& hotKeys;
        PermissionWatch& permissions;
        AppSettings& settings;
    };

    /// `onFinished` runs when the user has come to the end, or skips the rest.
    OnboardingState(Dependencies needs, std::function<void()> onFinished);

    // State

    Observable<int> currentStep{*this, 0};

    [[nodiscard]] bool isAccessibilityGranted() const;
    [[nodiscard]] bool isScreenCaptureGranted() const;
    /// The shortcuts that are set, since the pages speak of those that the program was made with elsewhere.
    [[nodiscard]] QString shortcutsOfThisMachine() const;
    [[nodiscard]] bool isFirstStep() const { return currentStep() == 0; }
    [[nodiscard]] bool isLastStep() const { return currentStep() == totalSteps - 1; }

    // Actions

    // A second press may come before the button of the first has gone.
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
