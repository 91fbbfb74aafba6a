#pragma once

#include <functional>

#include "hotkeys/permissions.h"

namespace tralio {

class AccessibilitySwitch;

/// Accessibility is the desktop's own switch, which we may turn on when the user asks for it. Whether the
/// screen can be captured needs no permission: on X11 every program can, and elsewhere the desktop has its
/// own tool for it, or none.
class DesktopPermissions final : public Permissions {
public:
    /// `canCapture` is called at every query.
    DesktopPermissions(AccessibilitySwitch& accessibility, std::function<bool()> canCapture);

    bool isAccessibilityTrusted() const override;
    bool requestAccessibilityTrust() override;
    bool preflightScreenCaptureAccess() const override { return m_canCapture(); }
    bool requestScreenCaptureAccess() override { return m_canCapture(); }

private:
    AccessibilitySwitch& m_accessibility;
    std::function<bool()> m_canCapture;
};

}  // namespace tralio
