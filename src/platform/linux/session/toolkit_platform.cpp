#include "platform/linux/session/toolkit_platform.h"

#include <QtGlobal>

namespace tralio {
namespace {

constexpr auto variable = "QT_QPA_PLATFORM";

}  // namespace

ToolkitPlatform::ToolkitPlatform() {
    if (qEnvironmentVariableIsSet(variable) || !qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        return;
    // The second is taken when the first cannot be had.
    m_chosen = qputenv(variable, qEnvironmentVariableIsSet("DISPLAY") ? "xcb;wayland" : "wayland;xcb");
}

ToolkitPlatform::~ToolkitPlatform() {
    if (m_chosen)
        qunsetenv(variable);
}

}  // namespace tralio
