#include "platform/linux/atspi/atspi_accessibility.h"

#include <algorithm>
#include <deque>
#include <utility>

#include "platform/linux/atspi/accessibility_switch.h"
#include "platform/linux/atspi/atspi_element.h"

namespace tralio {
namespace {

constexpr qint64 layerLimit = 200;   // milliseconds
constexpr qint64 searchLimit = 120;  // milliseconds, of the layer's: the PRIMARY selection wants some too
constexpr int menuBarDepth = 5;

/// The active window of the application. Which process an application is the bus knows: hung ones in the list
/// cost nothing.
AtspiReference activeWindow(const AtspiContext& context) {
    for (const AtspiReference& application : childrenOf(AtspiBus::desktop(), context)) {
        if (context.bus.processOf(application.service, context.budget) != context.processId)
            continue;
        for (const AtspiReference& window : childrenOf(application, context))
            if (statesOf(window, context).contains(AtspiState::active))
                return window;
    }
    return {};
}

/// The focused element of the application's active window, among what is visible, breadth first.
AtspiReference searchFocus(const AtspiContext& whole) {
    const AtspiContext context{{whole.bus, TimeBudget(std::min<qint64>(whole.budget.left(), searchLimit))},
        whole.primary, whole.processId};
    std::deque<AtspiReference> waiting{activeWindow(context)};
    while (!waiting.empty() && !context.budget.isSpent()) {
        const AtspiReference element = std::exchange(waiting.front(), {});
        waiting.pop_front();
        for (const AtspiReference& child : childrenOf(element, context)) {
            const AtspiStates states = statesOf(child, context);
            // Some toolkits call the tab above the focused page focused too, though it cannot be.
            if (states.contains(AtspiState::focused) && states.contains(AtspiState::focusable))
                return child;
            // A table makes its cells when asked for them, a spreadsheet by the million.
            if (states.contains(AtspiState::showing) && !states.contains(AtspiState::managesDescendants))
                waiting.push_back(child);
        }
    }
    return {};
}

/// Whether a menu bar may hang below. What else stands in a window may be a table that makes its cells when
/// asked for them.
bool holdsMenuBars(AtspiRole role) {
    switch (role) {
        case AtspiRole::filler:
        case AtspiRole::frame:
        case AtspiRole::layeredPane:
        case AtspiRole::panel:
        case AtspiRole::rootPane:
        case AtspiRole::splitPane:
            return true;
        default:
            return false;
    }
}

AtspiReference searchMenuBar(const AtspiReference& window, const AtspiContext& context) {
    QList<AtspiReference> level{window};
    for (int depth = 0; depth < menuBarDepth && !level.isEmpty(); ++depth) {
        QList<AtspiReference> below;
        for (const AtspiReference& element : std::as_const(level)) {
            for (const AtspiReference& child : childrenOf(element, context)) {
                const AtspiRole role = roleOf(child, context);
                if (role == AtspiRole::menuBar)
                    return child;
                if (holdsMenuBars(role))
                    below.push_back(child);
            }
        }
        level = below;
    }
    return {};
}

}  // namespace

AtspiAccessibility::AtspiAccessibility(const AccessibilitySwitch& accessibility, AtspiBus& bus,
    PrimarySelection& primary, WithoutSwitch withoutSwitch)
    : m_switch(accessibility), m_bus(bus), m_primary(primary), m_withoutSwitch(withoutSwitch) {
    m_bus.follow(m_switch);
}

std::shared_ptr<const AtspiContext> AtspiAccessibility::newContext(qint32 processId) const {
    return std::make_shared<AtspiContext>(
        AtspiContext{{m_bus, TimeBudget(layerLimit)}, m_primary, processId});
}

std::unique_ptr<AccessibleElement> AtspiAccessibility::focusedElement(qint32 processId) {
    const auto context = newContext(processId);
    if (!m_switch.isOn()) {
        if (m_withoutSwitch == WithoutSwitch::nothing)
            return nullptr;
        return std::make_unique<AtspiElement>(AtspiReference(), context);
    }
    AtspiReference element = m_bus.lastFocused(processId, context->budget);
    // Some applications tell of no focus when a window opens or closes. Our own grab takes the focus from the
    // right element for a moment too, so that one is given up only for a better one.
    const bool stillThere = !element.isNull() && statesOf(element, *context).contains(AtspiState::focused);
    if (!stillThere) {
        if (AtspiReference found = searchFocus(*context); !found.isNull()) {
            m_bus.rememberFocus(found);
            element = std::move(found);
        }
    }
    return std::make_unique<AtspiElement>(std::move(element), context);
}

std::unique_ptr<AccessibleElement> AtspiAccessibility::menuBar(qint32 processId) {
    if (!m_switch.isOn())
        return nullptr;
    const auto context = newContext(processId);
    const AtspiReference window = activeWindow(*context);
    AtspiReference bar = window.isNull() ? window : searchMenuBar(window, *context);
    return bar.isNull() ? nullptr : std::make_unique<AtspiMenuBar>(std::move(bar), context);
}

}  // namespace tralio
