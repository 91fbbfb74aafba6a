#include "ui/onboarding/onboarding_state.h"

#include "hotkeys/hot_key_service.h"
#include "hotkeys/permission_watch.h"
#include "hotkeys/shortcut_words.h"
#include "state/app_settings.h"

namespace tralio {

using namespace Qt::StringLiterals;

OnboardingState::OnboardingState(Dependencies needs, std::function<void()> onFinished)
    : m_needs(needs), m_onFinished(std::move(onFinished)) {
    for (ObservableObject* source : std::initializer_list<ObservableObject*>{
             &m_needs.permissions, &m_needs.settings, &m_needs.hotKeys.keys()})
        connect(source, &ObservableObject::objectWillChange, this, &ObservableObject::objectWillChange);
}

bool OnboardingState::isAccessibilityGranted() const {
    return m_needs.permissions.isAccessibilityGranted();
}

bool OnboardingState::isScreenCaptureGranted() const {
    return m_needs.permissions.isScreenCaptureGranted();
}

QString OnboardingState::shortcutsOfThisMachine() const {
    const AppSettings& settings = m_needs.settings;
    const HotKeys& keys = m_needs.hotKeys.keys();
    const auto told = [](const QString& display, HotKeyStatus status) {
        const bool works = status == HotKeyStatus::registered;
        return keysInWords(display) + (works ? QString() : u" (chưa dùng được)"_s);
    };
    return u"Trên máy này: %1 và %2"_s.arg(told(settings.hotKeyDisplay(), keys.textStatus()),
        told(settings.ocrHotKeyDisplay(), keys.ocrStatus()));
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
    // A copy, since a listener may delete the state, and with it the function.
    const auto onFinished = m_onFinished;
    onFinished();
}

void OnboardingState::checkPermissions() {
    m_needs.permissions.checkNow();
}

void OnboardingState::requestAccessibility() {
    m_needs.hotKeys.requestAccessibility();
}

void OnboardingState::requestScreenCapture() {
    m_needs.hotKeys.requestScreenCapture();
}

}  // namespace tralio
