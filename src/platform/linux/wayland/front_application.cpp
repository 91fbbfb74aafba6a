#include "platform/linux/wayland/front_application.h"

#include "platform/linux/atspi/atspi_bus.h"
#include "platform/linux/wayland/toplevel_watch.h"

namespace tralio {

using namespace Qt::StringLiterals;

QString FrontApplication::identity() const {
    if (m_toplevels)
        return applicationId();
    if (!m_accessibility.isOpen())
        return {};
    const AtspiReference window = m_accessibility.activeWindow();
    return window.isNull() ? u"unknown %1"_s.arg(m_accessibility.activationCount()) : window.service;
}

QString FrontApplication::applicationId() const {
    return m_toplevels ? m_toplevels->activeApplication() : QString();
}

bool FrontApplication::isNone() const {
    return m_toplevels && !m_toplevels->hasActiveWindow();
}

}  // namespace tralio
