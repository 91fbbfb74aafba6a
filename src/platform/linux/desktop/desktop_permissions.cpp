#include "platform/linux/desktop/desktop_permissions.h"

#include <utility>

#include "platform/linux/atspi/accessibility_switch.h"

namespace tralio {

DesktopPermissions::DesktopPermissions(AccessibilitySwitch& accessibility, std::function<bool()> canCapture)
    : m_accessibility(accessibility), m_canCapture(std::move(canCapture)) {}

bool DesktopPermissions::isAccessibilityTrusted() const {
    return m_accessibility.isOn();
}

bool DesktopPermissions::requestAccessibilityTrust() {
    return m_accessibility.isOn() || m_accessibility.turnOn();
}

}  // namespace tralio
