#pragma once

#include <functional>

#include "common/observable_object.h"

namespace tralio {

class Clock;
class HotKeyService;

/// The walk-through without its widgets: which page it shows, and the two permissions as they are. Made anew
/// for every walk-through; looks the permissions up every second while it exists. Changes no settings. Used
/// from the main thread.
class OnboardingState final : public ObservableObject {
    Q_OBJECT

public:
    static constexpr int totalSteps = 4;

    /// `onFinished` runs when the user has come to the end, or skips the rest.
    OnboardingState(HotKeyService& hotKeys, Clock& clock, std::function<void()> onFinished);

    // State

    Observable<int> currentStep{*this, 0};
    Observable<bool> isAccessibilityGranted;
    Observable<bool> isScreenCaptureGranted;

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
    HotKeyService& m_hotKeys;
    std::function<void()> m_onFinished;
};

}  // namespace tralio
