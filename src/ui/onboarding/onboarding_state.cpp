#include "ui/onboarding/onboarding_state.h"

#include "common/clock.h"
#include "hotkeys/hot_key_service.h"

namespace tralio {
namespace {

using namespace std::chrono_literals;

constexpr auto permissionPoll = 1s;

}  // namespace

OnboardingState::OnboardingState(HotKeyService& hotKeys, Clock& clock, std::function<void()> onFinished)
    : isAccessibilityGranted(*this, hotKeys.isAccessibilityGranted()),
      isScreenCaptureGranted(*this, hotKeys.isScreenCaptureGranted()),
      m_hotKeys(hotKeys),
      m_onFinished(std::move(onFinished)) {
    clock.every(
        permissionPoll, this, [this] { checkPermissions(); });
}

void OnboardingState::next() {
    if (!isLastStep())
        currentStep = currentStep() + 1;
}

void OnboardingState::back() {
    if (!isFirstStep())
        currentStep = currentStep() - 1;
}

void OnboardingState::finish() {
    // Whoever is told may delete the state, and with it the function.
    const auto onFinished = m_onFinished;
    onFinished();
}

void OnboardingState::checkPermissions() {
    isAccessibilityGranted = m_hotKeys.isAccessibilityGranted();
    isScreenCaptureGranted = m_hotKeys.isScreenCaptureGranted();
}

void OnboardingState::requestAccessibility() {
    m_hotKeys.requestAccessibility();
}

void OnboardingState::requestScreenCapture() {
    m_hotKeys.requestScreenCapture();
}

}  // namespace tralio
