#pragma once

#include "hotkeys/accessibility.h"
#include "platform/linux/atspi/atspi_bus.h"

namespace tralio {

class AccessibilitySwitch;
class PrimarySelection;
struct AtspiContext;

/// Other programs' user interfaces over the accessibility bus. While the desktop's accessibility switch is
/// off nothing can be had.
class AtspiAccessibility final : public Accessibility {
public:
    AtspiAccessibility(AccessibilitySwitch& accessibility, PrimarySelection& primary);

    std::unique_ptr<AccessibleElement> focusedElement(qint32 processId) override;
    std::unique_ptr<AccessibleElement> menuBar(qint32 processId) override;

private:
    [[nodiscard]] std::shared_ptr<const AtspiContext> newContext(qint32 processId) const;

    AccessibilitySwitch& m_switch;
    PrimarySelection& m_primary;
    AtspiBus m_bus;
};

}  // namespace tralio
