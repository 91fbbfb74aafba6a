#pragma once

#include <map>
#include <memory>
#include <optional>
#include <xcb/xcb_keysyms.h>

#include "programs/snip/input_grab.h"
#include "programs/snip/overlay.h"
#include "programs/snip/region_selection.h"

namespace tralio {

/// Lets the user draw a rectangle on a frozen screen: passes the server's events to RegionSelection, and
/// shows its state.
class Picker final {
public:
    Picker(const XDisplay& display, FrozenScreen& screen, const MonitorLayout& monitors);

    /// Blocks until the user is done: the rectangle, or nothing if cancelled. The screen is then as before.
    /// Throws std::runtime_error when the input cannot be grabbed or the display is lost.
    [[nodiscard]] std::optional<QRect> pick();

private:
    void handlePending(Overlay& overlay);
    void handle(const xcb_generic_event_t& event);
    void pressButton(const xcb_button_press_event_t& event);
    void pressKey(const xcb_key_press_event_t& event);
    [[nodiscard]] bool isRepeat(const xcb_key_press_event_t& event);
    void waitForEvent(bool isFading);
    [[nodiscard]] xcb_cursor_t crossFor(double scale);

    const XDisplay& m_display;
    FrozenScreen& m_screen;
    const MonitorLayout& m_monitors;
    RegionSelection m_selection;
    std::unique_ptr<xcb_key_symbols_t, decltype(&xcb_key_symbols_free)> m_keys;
    /// Keys that were down before the keyboard was grabbed, as the hot key's are, with the time of their last
    /// release.
    std::map<xcb_keycode_t, std::optional<xcb_timestamp_t>> m_heldKeys;
    XcbPtr<xcb_generic_event_t> m_queued;      ///< an event that was read while flushing
    std::map<double, xcb_cursor_t> m_crosses;  ///< by scale
};

}  // namespace tralio
