#pragma once

#include <QByteArrayList>

namespace tralio {

/// Chooses Qt's window system while the application object is made. In a Wayland session with Xwayland that
/// is X11, where a window can be placed beside the tray and kept in front. Without Xwayland, or where X
/// windows would be blurred, it is Wayland, without loading a GL stack. A choice of the user's is kept.
///
/// The environment variables are for this process: programs that it starts must not inherit them.
class ToolkitPlatform final {
public:
    ToolkitPlatform();
    ToolkitPlatform(const ToolkitPlatform&) = delete;
    ToolkitPlatform& operator=(const ToolkitPlatform&) = delete;
    /// Destroy it once the application object exists.
    ~ToolkitPlatform();

private:
    /// Sets QT_IM_MODULE from XMODIFIERS. Qt's X11 platform does not support XIM, the protocol that
    /// XMODIFIERS is for, and a Wayland session may rely on Wayland's own protocol and set nothing for Qt.
    void chooseInputMethod();
    void choose(const char* variable, const char* value);

    QByteArrayList m_chosen;  ///< environment variables that were set here
};

}  // namespace tralio
