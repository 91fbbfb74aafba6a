#include "ui/main/main_state.h"

#include "common/on_change.h"
#include "history/translation_item.h"
#include "hotkeys/permission_watch.h"
#include "state/app_state.h"
#include "update/update_service.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

}  // namespace

std::optional<AppTab> appTab(int rawValue) {
    constexpr int tabs = 4;
    return rawValue >= 0 && rawValue < tabs ? std::optional(static_cast<AppTab>(rawValue)) : std::nullopt;
}

MainState::MainState(Dependencies needs) : m_persisted(*this, needs.store), m_needs(needs) {
    m_persisted.load();
    connect(
        &m_needs.permissions, &ObservableObject::objectWillChange, this, &ObservableObject::objectWillChange);

    AppState& appState = m_needs.appState;
    onChange(
        appState, this, [&appState] { return appState.openPopoverSignal(); }, [this] { appear(); });
    onChange(
        appState, this, [&appState] { return appState.translateTriggerId(); },
        [this] { selectedTab = AppTab::translate; });
}

bool MainState::isAccessibilityGranted() const {
    return m_needs.permissions.isAccessibilityGranted();
}

bool MainState::isScreenCaptureGranted() const {
    return m_needs.permissions.isScreenCaptureGranted();
}

std::optional<QString> MainState::ungrantedWarningText() const {
    if (isAccessibilityGranted() && isScreenCaptureGranted())
        return std::nullopt;
    if (isAccessibilityGranted())
        return u"Chưa cấp quyền Chụp màn hình"_s;
    if (isScreenCaptureGranted())
        return u"Chưa cấp quyền Trợ năng"_s;
    return u"Chưa cấp quyền: Trợ năng & Chụp"_s;
}

bool MainState::isOnboardingShown() const {
    return !hasCompletedOnboarding() || m_needs.appState.showOnboarding();
}

void MainState::appear() {
    selectedTab = AppTab::translate;
    m_needs.permissions.checkNow();
}

void MainState::select(const TranslationItem& item) {
    m_needs.appState.stopReading();
    m_needs.appState.offerTranslation(item.sourceText);  // brings the tab; undo brings what was there before
}

void MainState::finishOnboarding() {
    hasCompletedOnboarding = true;
    m_needs.appState.showOnboarding = false;
}

void MainState::dismissUpdate() {
    m_needs.updates.isUpdateAvailable = false;
}

}  // namespace tralio
