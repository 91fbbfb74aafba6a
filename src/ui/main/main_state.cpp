#include "ui/main/main_state.h"

#include "common/clock.h"
#include "common/on_change.h"
#include "hotkeys/hot_key_service.h"
#include "state/app_state.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr auto permissionPoll = 1s;

void assignIfChanged(Observable<bool>& flag, bool value) {
    if (flag() != value)
        flag = value;
}

}  // namespace

std::optional<AppTab> appTab(int rawValue) {
    constexpr int tabs = 4;
    return rawValue >= 0 && rawValue < tabs ? std::optional(static_cast<AppTab>(rawValue)) : std::nullopt;
}

MainState::MainState(AppState& appState, HotKeyService& hotKeys, Clock& clock)
    : isAccessibilityGranted(*this, hotKeys.isAccessibilityGranted()),
      isScreenCaptureGranted(*this, hotKeys.isScreenCaptureGranted()),
      m_hotKeys(hotKeys) {
    onChange(
        appState, this, [&appState] { return appState.openPopoverSignal(); },
        [this] {
            selectedTab = AppTab::translate;
            checkPermissions();
        });
    onChange(
        appState, this, [&appState] { return appState.translateTriggerId(); },
        [this] { selectedTab = AppTab::translate; });
    clock.every(permissionPoll, this, [this] { checkPermissions(); });
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

void MainState::checkPermissions() {
    assignIfChanged(isAccessibilityGranted, m_hotKeys.isAccessibilityGranted());
    assignIfChanged(isScreenCaptureGranted, m_hotKeys.isScreenCaptureGranted());
}

}  // namespace tralio
