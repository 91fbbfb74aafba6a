#include "platform/linux/atspi/atspi_search.h"

#include <algorithm>
#include <deque>
#include <utility>

#include "platform/linux/bus/process_facts.h"

namespace tralio {
namespace {

constexpr qint64 searchLimit = 120;  // milliseconds; less than the layer's limit, to leave time for PRIMARY
constexpr qint64 applicationLimit = 30;  // of this, for one that may be the wrong one, and may hang
constexpr int menuBarDepth = 5;

AtspiContext withinLimit(const AtspiContext& whole, qint64 limit) {
    return {{whole.bus, TimeBudget(std::min<qint64>(whole.budget.left(), limit))}, whole.primary,
        whole.processId, whole.windowTitle};
}

AtspiReference activeWindowOf(const AtspiReference& application, const AtspiQuestion& question) {
    for (const AtspiReference& window : childrenOf(application, question))
        if (statesOf(window, question).contains(AtspiState::active))
            return window;
    return {};
}

/// The active window of an application that reaches the bus through a sandbox's proxy. It is recognised by
/// its title, since the process is the proxy's.
AtspiReference activeWindowBehindProxy(const QList<AtspiReference>& proxied, const AtspiContext& context) {
    for (const AtspiReference& application : proxied) {
        const AtspiContext limited = withinLimit(context, applicationLimit);
        AtspiReference window = activeWindowOf(application, limited);
        if (!window.isNull() && nameOf(window, limited) == context.windowTitle)
            return window;
    }
    return {};
}

/// Whether an element with this role may contain a menu bar. Others are not entered: a table creates its
/// cells when they are asked for.
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

}  // namespace

AtspiReference activeWindow(const AtspiContext& context) {
    QList<AtspiReference> proxied;
    for (const AtspiReference& application : childrenOf(AtspiBus::desktop(), context)) {
        const auto process = context.bus.processOf(application.service, context.budget);
        if (!process || isBusProxy(*process))
            proxied += application;
        if (process != context.processId)
            continue;
        if (AtspiReference window = activeWindowOf(application, context); !window.isNull())
            return window;
    }
    return context.windowTitle.isEmpty() ? AtspiReference() : activeWindowBehindProxy(proxied, context);
}

AtspiReference searchFocus(const AtspiContext& whole) {
    const AtspiContext context = withinLimit(whole, searchLimit);
    const AtspiReference window = activeWindow(context);
    if (window.isNull())
        return {};
    if (AtspiReference last = context.bus.lastFocused(window.service); isFocused(last, context))
        return last;
    std::deque<AtspiReference> waiting{window};
    while (!waiting.empty() && !context.budget.isSpent()) {
        const AtspiReference element = std::exchange(waiting.front(), {});
        waiting.pop_front();
        for (const AtspiReference& child : childrenOf(element, context)) {
            const AtspiStates states = statesOf(child, context);
            // Some toolkits also report the tab of the focused page as focused, although it is not focusable.
            if (states.contains(AtspiState::focused) && states.contains(AtspiState::focusable))
                return child;
            // A table creates its cells when they are asked for; a spreadsheet has millions.
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

bool isFocused(const AtspiReference& object, const AtspiQuestion& question) {
    return !object.isNull() && statesOf(object, question).contains(AtspiState::focused);
}

}  // namespace tralio
