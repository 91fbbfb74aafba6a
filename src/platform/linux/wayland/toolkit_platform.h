#pragma once

#include <QByteArrayList>

namespace tralio {

/// Tells the toolkit which window system to use, while the application object is made: Xwayland's in a
/// Wayland session that has it, where a window can be put beside the tray and kept in front, and else, or
/// where X windows would be blurred, Wayland's, without loading a GL stack for it. What the user has chosen
/// stands.
///
/// The choice is for this process: programs that it starts must not inherit it.
class ToolkitPlatform final {
public:
    ToolkitPlatform();
    ToolkitPlatform(const ToolkitPlatform&) = delete;
    ToolkitPlatform& operator=(const ToolkitPlatform&) = delete;
    /// To be called once the application object is there.
    ~ToolkitPlatform();

private:
    /// The toolkit's X11 platform does not speak the protocol of X input methods, by which they name
    /// themselves, and a Wayland session's may rely on that of Wayland.
    void chooseInputMethod();
    void choose(const char* variable, const char* value);

    QByteArrayList m_chosen;  ///< variables of the environment
};

}  // namespace tralio
