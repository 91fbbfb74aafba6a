#include "hotkeys/permission_watch.h"

#include "hotkeys/hot_key_service.h"

namespace tralio {
namespace {

using namespace std::chrono_literals;

constexpr auto interval = 1s;

void assignIfChanged(Observable<bool>& flag, bool value) {
    if (flag() != value)
        flag = value;
}

}  // namespace

PermissionWatch::PermissionWatch(const HotKeyService& hotKeys, Clock& clock)
    : isAccessibilityGranted(*this, hotKeys.isAccessibilityGranted()),
      isScreenCaptureGranted(*this, hotKeys.isScreenCaptureGranted()),
      m_hotKeys(hotKeys),
      m_poll(clock.every(interval, [this] { checkNow(); })) {}

void PermissionWatch::checkNow() {
    assignIfChanged(isAccessibilityGranted, m_hotKeys.isAccessibilityGranted());
    assignIfChanged(isScreenCaptureGranted, m_hotKeys.isScreenCaptureGranted());
}

}  // namespace tralio
