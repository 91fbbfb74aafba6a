#include "platform/linux/wayland/toolkit_platform.h"

#include <QGuiApplication>
#include <QOpenGLContext>

#include "platform/linux/wayland/magnified_xwayland.h"

namespace tralio {

ToolkitPlatform::ToolkitPlatform() {
    if (!qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) {
        chooseInputMethod();
        return;
    }
    // Qt takes the second platform if the first one does not work.
    const bool isX11Good = qEnvironmentVariableIsSet("DISPLAY") && !isXwaylandMagnified();
    choose("QT_QPA_PLATFORM", isX11Good ? "xcb;wayland" : "wayland;xcb");
    if (qgetenv("QT_QPA_PLATFORM").startsWith("xcb"))
        chooseInputMethod();
    // GL costs 30 MB, and our windows are drawn in shared memory. There is no plugin of this name, so none is
    // loaded.
    choose("QT_WAYLAND_CLIENT_BUFFER_INTEGRATION", "none");
}

ToolkitPlatform::~ToolkitPlatform() {
    // Qt chooses its GL integration when a context is first created. Create one now, while the variable is
    // set, so that it finds none.
    if (!m_chosen.isEmpty() && QGuiApplication::platformName().startsWith(u"wayland"))
        QOpenGLContext().create();
    for (const QByteArray& variable : m_chosen)
        qunsetenv(variable.constData());
}

void ToolkitPlatform::chooseInputMethod() {
    if (qEnvironmentVariableIsSet("QT_IM_MODULES"))
        return;
    const QByteArray modifiers = qgetenv("XMODIFIERS");
    for (const char* method : {"fcitx", "ibus"})
        if (modifiers.startsWith(QByteArray("@im=") + method))
            choose("QT_IM_MODULE", method);
}

void ToolkitPlatform::choose(const char* variable, const char* value) {
    if (!qEnvironmentVariableIsSet(variable) && qputenv(variable, value))
        m_chosen += variable;
}

}  // namespace tralio
