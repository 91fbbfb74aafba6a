#pragma once

#include <bitset>
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

    using Keys = std::bitset<256>;
    /// By code, those that were down when the keyboard became ours.
    [[nodiscard]] const Keys& heldKeys() const { return m_heldKeys; }

private:
    void letGo() const;

    const XDisplay& m_display;
    Keys m_heldKeys;
};

}  // namespace tralio
