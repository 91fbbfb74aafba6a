#pragma once

#include "hotkeys/accessibility.h"
#include "platform/linux/atspi/atspi_bus.h"

namespace tralio {

class AccessibilitySwitch;
class PrimarySelection;
struct AtspiContext;

/// Other programs' user interfaces over the accessibility bus.
class AtspiAccessibility final : public Accessibility {
public:
    /// What can be had while the desktop's accessibility switch is off.
    enum class WithoutSwitch { nothing, primarySelection };

    AtspiAccessibility(const AccessibilitySwitch& accessibility, AtspiBus& bus, PrimarySelection& primary,
        WithoutSwitch withoutSwitch = WithoutSwitch::nothing);

    std::unique_ptr<AccessibleElement> focusedElement(qint32 processId) override;
    std::unique_ptr<AccessibleElement> menuBar(qint32 processId) override;

private:
    [[nodiscard]] std::shared_ptr<const AtspiContext> newContext(qint32 processId) const;

    const AccessibilitySwitch& m_switch;
    AtspiBus& m_bus;
    PrimarySelection& m_primary;
    WithoutSwitch m_withoutSwitch;
};

}  // namespace tralio
