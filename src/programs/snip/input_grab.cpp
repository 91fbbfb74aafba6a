#include "programs/snip/input_grab.h"

#include <QDeadlineTimer>
#include <QThread>

#include <stdexcept>

namespace tralio {
namespace {

constexpr int patience = 1000;  // ms: the program whose hot key started us releases its grab within some
constexpr int pause = 5;        // ms
constexpr quint16 pointerEvents =
    XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION;

/// One attempt at both grabs. They are on the root window, since a window of ours could be grabbed only once
/// it is on the screen, and that is after the grabs.
class GrabRequests final {
public:
    struct Outcome {
        bool hasPointer;
        bool hasKeyboard;
        InputGrab::Keys heldKeys;
    };

    GrabRequests(const XDisplay& display, xcb_cursor_t cursor)
        : m_xcb(display.xcb()),
          m_pointer(xcb_grab_pointer(m_xcb, 0, display.root(), pointerEvents, XCB_GRAB_MODE_ASYNC,
              XCB_GRAB_MODE_ASYNC, XCB_NONE, cursor, XCB_CURRENT_TIME)),
          m_keyboard(xcb_grab_keyboard(
              m_xcb, 0, display.root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)),
          m_keymap(xcb_query_keymap(m_xcb)) {}

    /// Waits for the server's replies; call only once.
    [[nodiscard]] Outcome outcome() const {
        const XcbPtr<xcb_grab_pointer_reply_t> pointer{xcb_grab_pointer_reply(m_xcb, m_pointer, nullptr)};
        const XcbPtr<xcb_grab_keyboard_reply_t> keyboard{xcb_grab_keyboard_reply(m_xcb, m_keyboard, nullptr)};
        const XcbPtr<xcb_query_keymap_reply_t> keymap{xcb_query_keymap_reply(m_xcb, m_keymap, nullptr)};
        InputGrab::Keys held;
        for (size_t key = 0; keymap && key < held.size(); ++key)
            held[key] = keymap->keys[key / 8] >> (key % 8) & 1;
        return {pointer && pointer->status == XCB_GRAB_STATUS_SUCCESS,
            keyboard && keyboard->status == XCB_GRAB_STATUS_SUCCESS, held};
    }

private:
    xcb_connection_t* m_xcb;
    xcb_grab_pointer_cookie_t m_pointer;
    xcb_grab_keyboard_cookie_t m_keyboard;
    xcb_query_keymap_cookie_t m_keymap;
};

}  // namespace

InputGrab::InputGrab(const XDisplay& display, xcb_cursor_t cursor, const std::function<void()>& freeze)
    : m_display(display) {
    const QDeadlineTimer deadline(patience);
    for (bool isFirstTry = true;; isFirstTry = false) {
        const GrabRequests requests(display, cursor);
        if (isFirstTry)
            freeze();
        const GrabRequests::Outcome outcome = requests.outcome();
        if (outcome.hasPointer && outcome.hasKeyboard) {
            if (!isFirstTry)
                freeze();
            m_heldKeys = outcome.heldKeys;
            return;
        }
        // One grab without the other is useless, and the other program may need the input to finish.
        letGo();
        display.check();
        if (deadline.hasExpired())
            throw std::runtime_error(outcome.hasPointer ? "another program keeps the keyboard"
                                                        : "another program keeps the pointer");
        QThread::msleep(pause);
    }
}

InputGrab::~InputGrab() {
    letGo();
}

void InputGrab::setCursor(xcb_cursor_t cursor) {
    xcb_change_active_pointer_grab(m_display.xcb(), cursor, XCB_CURRENT_TIME, pointerEvents);
}

void InputGrab::letGo() const {
    xcb_ungrab_pointer(m_display.xcb(), XCB_CURRENT_TIME);
    xcb_ungrab_keyboard(m_display.xcb(), XCB_CURRENT_TIME);
    m_display.flush();
}

}  // namespace tralio
