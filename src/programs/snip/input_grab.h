#pragma once

#include <functional>

#include "programs/snip/x_display.h"

namespace tralio {

/// Grabs pointer and keyboard for its lifetime: all presses come to our connection, in screen pixels. The
/// constructor throws std::runtime_error when another program keeps either for more than a second.
class InputGrab final {
public:
    /// `freeze` requests a copy of the screen. It is called right after the first attempt, before the
    /// server's reply, so that what disappears with a grab, such as a tooltip, is still in the copy; if more
    /// attempts were needed, once more after the last one.
    InputGrab(const XDisplay& display, xcb_cursor_t cursor, const std::function<void()>& freeze);
    InputGrab(const InputGrab&) = delete;
    InputGrab& operator=(const InputGrab&) = delete;
    ~InputGrab();

    void setCursor(xcb_cursor_t cursor);

private:
    void letGo() const;

    const XDisplay& m_display;
};

}  // namespace tralio
