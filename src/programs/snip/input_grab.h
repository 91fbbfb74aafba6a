#pragma once

#include <bitset>
#include <functional>

#include "programs/snip/x_display.h"

namespace tralio {

/// Pointer and keyboard are ours while this lives: every press, wherever it happens, comes to our connection
/// in pixels of the screen. Throws std::runtime_error when another program keeps them for longer than a
/// second.
class InputGrab final {
public:
    /// `freeze` is called to ask the server for the screen as it is when the input becomes ours. The server
    /// gets that together with our first try, so that what goes away without input, like a tooltip, is still
    /// there; after a wait it is called once more.
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
