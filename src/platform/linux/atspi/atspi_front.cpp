#include "platform/linux/atspi/atspi_front.h"

#include <QCoreApplication>

#include <algorithm>

#include "platform/linux/atspi/atspi_element.h"

namespace tralio {
namespace {

constexpr qint64 frontLimit = 150;   // milliseconds
constexpr qint64 suspectLimit = 30;  // of this, for one application, which may hang

bool hasActiveWindow(const AtspiReference& application, const AtspiQuestion& question) {
    const auto windows = childrenOf(application, question);
    return std::any_of(windows.begin(), windows.end(), [&](const AtspiReference& window) {
        return statesOf(window, question).contains(AtspiState::active);
    });
}

/// The application behind a connection; absent for our own, since a blocking call to ourselves would never be
/// answered.
std::optional<AtspiApplication> describe(const QString& service, const AtspiQuestion& question) {
    const auto process = question.bus.processOf(service, question.budget);
    if (!process || *process == QCoreApplication::applicationPid())
        return std::nullopt;
    const AtspiReference root{service, AtspiBus::desktop().path};
    const QString name = nameOf(root, question);
    // GNOME draws the title bars of X windows in a separate process, which is no application.
    if (name == u"mutter-x11-frames")
        return std::nullopt;
    return AtspiApplication{*process, name, toolkitOf(service, question)};
}

}  // namespace

std::optional<AtspiApplication> activeAtspiApplication(const AtspiBus& bus) {
    if (const AtspiReference last = bus.activeWindow(); !last.isNull()) {
        const AtspiQuestion question{bus, TimeBudget(suspectLimit)};
        auto application = describe(last.service, question);
        if (application) {
            application->answers = statesOf(last, question).contains(AtspiState::active);
            // If it hangs, its last report still counts.
            if (application->answers || question.budget.isSpent())
                return application;
        }
    }
    const AtspiQuestion whole{bus, TimeBudget(frontLimit)};
    for (const AtspiReference& reference : childrenOf(AtspiBus::desktop(), whole)) {
        const AtspiQuestion question{bus, TimeBudget(std::min<qint64>(whole.budget.left(), suspectLimit))};
        auto application = describe(reference.service, question);
        if (application && hasActiveWindow(reference, question))
            return application;
    }
    return std::nullopt;
}

}  // namespace tralio
