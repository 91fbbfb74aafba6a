#pragma once

#include "hotkeys/permissions.h"

namespace tralio {

class AccessibilitySwitch;

/// The permissions of an X11 session: accessibility is the desktop's own switch, which we may turn on when
/// the user asks for it, and the screen is open to every program.
class DesktopPermissions final : public Permissions {
public:
    explicit DesktopPermissions(AccessibilitySwitch& accessibility);

    bool isAccessibilityTrusted() const override;
    bool requestAccessibilityTrust() override;
    bool preflightScreenCaptureAccess() const override { return true; }
    bool requestScreenCaptureAccess() override { return true; }

private:
    AccessibilitySwitch& m_accessibility;
};

}  // namespace tralio
