#include "platform/linux/atspi/atspi_accessibility.h"

#include <utility>

#include "platform/linux/atspi/accessibility_switch.h"
#include "platform/linux/atspi/atspi_search.h"
#include "platform/linux/bus/process_facts.h"

namespace tralio {
namespace {

constexpr qint64 layerLimit = 200;    // milliseconds
constexpr qint64 keyboardLimit = 50;  // before keys are typed

}  // namespace

AtspiAccessibility::AtspiAccessibility(
    const AccessibilitySwitch& accessibility, AtspiBus& bus, PrimarySelection& primary, AskTitle frontTitle)
    : m_switch(accessibility), m_bus(bus), m_primary(primary), m_frontTitle(std::move(frontTitle)) {
    m_bus.follow(m_switch);
}

std::shared_ptr<const AtspiContext> AtspiAccessibility::newContext(qint32 processId, qint64 limit) const {
    return std::make_shared<AtspiContext>(AtspiContext{
        {m_bus, TimeBudget(limit)}, m_primary, processId, m_frontTitle ? m_frontTitle() : QString()});
}

AtspiReference AtspiAccessibility::findFocus(const AtspiContext& context) {
    // Some applications report no focus when a window opens or closes. A key grab of ours also takes the
    // focus from the right element for a moment, so the last known element is given up only when a better one
    // is found.
    AtspiReference last = m_bus.lastFocused(context.processId, context.budget);
    if (isFocused(last, context))
        return last;
    AtspiReference found = searchFocus(context);
    if (found.isNull())
        return last;
    m_bus.rememberFocus(found);
    return found;
}

std::unique_ptr<AccessibleElement> AtspiAccessibility::focusedElement(qint32 processId) {
    if (!m_switch.isOn())
        return nullptr;
    const auto context = newContext(processId, layerLimit);
    return std::make_unique<AtspiElement>(findFocus(*context), context);
}

std::optional<bool> AtspiAccessibility::focusIsTerminal(qint32 processId) {
    if (!m_switch.isOn())
        return std::nullopt;
    const auto context = newContext(processId, keyboardLimit);
    return isTerminal(findFocus(*context), *context);
}

std::unique_ptr<AccessibleElement> AtspiAccessibility::menuBar(qint32 processId) {
    // In the menu of Emacs "Copying Conditions" would match as Copy. Its selection is in PRIMARY anyway.
    if (!m_switch.isOn() || processName(processId).startsWith(u"emacs"))
        return nullptr;
    const auto context = newContext(processId, layerLimit);
    const AtspiReference window = activeWindow(*context);
    AtspiReference bar = window.isNull() ? window : searchMenuBar(window, *context);
    return bar.isNull() ? nullptr : std::make_unique<AtspiMenuBar>(std::move(bar), context);
}

}  // namespace tralio
