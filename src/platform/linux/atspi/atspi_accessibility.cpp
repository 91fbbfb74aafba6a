#include "platform/linux/atspi/atspi_accessibility.h"

#include <deque>
#include <utility>

#include "platform/linux/atspi/accessibility_switch.h"
#include "platform/linux/atspi/atspi_element.h"

namespace tralio {
namespace {

constexpr qint64 layerLimit = 200;  // milliseconds
constexpr int menuBarDepth = 5;

/// The active window of the application. Which process an application is the bus knows: hung ones in the list
/// cost nothing.
AtspiReference activeWindow(const AtspiContext& context) {
    for (const AtspiReference& application : childrenOf(AtspiBus::desktop(), context)) {
        if (context.bus.processOf(application.service, context.budget) != context.processId)
            continue;
        for (const AtspiReference& window : childrenOf(application, context)) {
            if (statesOf(window, context).contains(AtspiState::active))
                return window;
        }
    }
    return {};
}

/// The focused element below `window`, among what is visible, breadth first.
AtspiReference searchFocus(const AtspiReference& window, const AtspiContext& context) {
    std::deque<AtspiReference> waiting{window};
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

AtspiReference searchMenuBar(const AtspiReference& window, const AtspiContext& context) {
    QList<AtspiReference> level{window};
    for (int depth = 0; depth < menuBarDepth && !level.isEmpty(); ++depth) {
        QList<AtspiReference> below;
        for (const AtspiReference& element : std::as_const(level))
            below += childrenOf(element, context);
        for (const AtspiReference& element : std::as_const(below)) {
            if (roleOf(element, context) == AtspiRole::menuBar)
                return element;
        }
        level = below;
    }
    return {};
}

}  // namespace

AtspiAccessibility::AtspiAccessibility(AccessibilitySwitch& accessibility, PrimarySelection& primary)
    : m_switch(accessibility), m_primary(primary) {
    const auto follow = [this](bool on) {
        if (on)
            m_bus.open();
    };
    QObject::connect(&m_switch, &AccessibilitySwitch::changed, &m_bus, follow);
    follow(m_switch.isOn());
}

std::shared_ptr<const AtspiContext> AtspiAccessibility::newContext(qint32 processId) const {
    return std::make_shared<AtspiContext>(AtspiContext{m_bus, m_primary, processId, TimeBudget(layerLimit)});
}

std::unique_ptr<AccessibleElement> AtspiAccessibility::focusedElement(qint32 processId) {
    if (!m_switch.isOn())
        return nullptr;
    m_bus.open();  // again, should the bus have been restarted
    const auto context = newContext(processId);
    AtspiReference element = m_bus.lastFocused(processId, context->budget);
    if (element.isNull()) {
        const AtspiReference window = activeWindow(*context);
        element = window.isNull() ? window : searchFocus(window, *context);
        if (!element.isNull())
            m_bus.rememberFocus(element);
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
