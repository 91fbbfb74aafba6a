#pragma once

#include <functional>

#include "hotkeys/accessibility.h"
#include "platform/linux/atspi/atspi_bus.h"

namespace tralio {

class AccessibilitySwitch;
class PrimarySelection;
struct AtspiContext;

/// Other programs' user interfaces over the accessibility bus.
class AtspiAccessibility final : public Accessibility {
public:
    /// The title of the window in front. Identifies an application whose process the bus does not know.
    using AskTitle = std::function<QString()>;

    AtspiAccessibility(const AccessibilitySwitch& accessibility, AtspiBus& bus, PrimarySelection& primary,
        AskTitle frontTitle = {});

    std::unique_ptr<AccessibleElement> focusedElement(qint32 processId) override;
    std::unique_ptr<AccessibleElement> menuBar(qint32 processId) override;

    /// Whether the element with the focus is a terminal; absent when there is no reliable answer within 50
    /// ms.
    [[nodiscard]] std::optional<bool> focusIsTerminal(qint32 processId);

private:
    [[nodiscard]] std::shared_ptr<const AtspiContext> newContext(qint32 processId, qint64 limit) const;
    [[nodiscard]] AtspiReference findFocus(const AtspiContext& context);

    const AccessibilitySwitch& m_switch;
    AtspiBus& m_bus;
    PrimarySelection& m_primary;
    AskTitle m_frontTitle;
};

}  // namespace tralio
