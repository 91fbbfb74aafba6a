#include "platform/linux/session/desktop_permissions.h"

#include "platform/linux/atspi/accessibility_switch.h"

namespace tralio {

DesktopPermissions::DesktopPermissions(AccessibilitySwitch& accessibility) : m_accessibility(accessibility) {}

bool DesktopPermissions::isAccessibilityTrusted() const {
    return m_accessibility.isOn();
}

bool DesktopPermissions::requestAccessibilityTrust() {
    return m_accessibility.isOn() || m_accessibility.turnOn();
}

}  // namespace tralio
