#include "platform/linux/wayland/wayland_workspace.h"

#include <QGuiApplication>

#include "platform/linux/atspi/atspi_front.h"
#include "platform/linux/bus/sandbox_id.h"
#include "platform/linux/desktop/desktop_settings.h"
#include "platform/linux/wayland/front_application.h"

namespace tralio {
namespace {

std::optional<QString> unlessEmpty(const QString& text) {
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

}  // namespace

WaylandWorkspace::WaylandWorkspace(const FrontApplication& front, const AtspiBus& accessibility)
    : m_front(front), m_accessibility(accessibility) {}

std::optional<RunningApplication> WaylandWorkspace::frontmostApplication() {
    if (QGuiApplication::focusWindow())
        return RunningApplication{
            static_cast<qint32>(QCoreApplication::applicationPid()), std::nullopt, std::nullopt};
    if (m_front.isNone())
        return std::nullopt;
    const QString id = m_front.applicationId();
    const auto accessible = activeAtspiApplication(m_accessibility);
    if (!accessible)
        return RunningApplication{0, unlessEmpty(id), unlessEmpty(id)};
    QString bundleIdentifier = sandboxId(accessible->processId);
    if (bundleIdentifier.isEmpty())
        bundleIdentifier = id.isEmpty() ? accessible->name : id;
    return RunningApplication{
        accessible->processId, unlessEmpty(bundleIdentifier), unlessEmpty(accessible->name)};
}

void WaylandWorkspace::openURL(const QUrl& url) {
    openDesktopURL(url);
}

}  // namespace tralio
