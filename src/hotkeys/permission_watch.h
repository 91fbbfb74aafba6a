#pragma once

#include "common/clock.h"
#include "common/observable_object.h"

namespace tralio {

class HotKeyService;

/// The two permissions as the panels show them: checked every second while this object exists, and on
/// request. Only changes are announced. Used from the main thread.
class PermissionWatch final : public ObservableObject {
    Q_OBJECT

public:
    /// Both outlive the watch.
    PermissionWatch(const HotKeyService& hotKeys, Clock& clock);

    Observable<bool> isAccessibilityGranted;
    Observable<bool> isScreenCaptureGranted;

    void checkNow();

private:
    const HotKeyService& m_hotKeys;
    ScheduledCall m_poll;
};

}  // namespace tralio
