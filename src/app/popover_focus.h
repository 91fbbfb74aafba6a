#pragma once

#include "common/clock.h"

namespace tralio {

/// Decides when the user's actions elsewhere close the popover, and asks for the keyboard focus again while a
/// window manager is slow to give it. Does not depend on a real window.
///
/// - A click outside closes the popover when the button is released, unless it is on an aid for typing. If it
///   is released over the popover and something was dragged along, that is a drop. A text that was selected
///   up to there is not.
/// - Losing the focus to another window closes it, too: the user has gone there with the keyboard, or by a
///   click in a session that does not report clicks. It stays open if the focus only follows the pointer, or
///   while a grab keeps the keyboard from every window for a moment, as input methods and the volume keys do.
///
/// Used from the main thread.
class PopoverFocus final {
public:
    /// What PopoverFocus needs of the popover's window.
    class Window {
    public:
        virtual ~Window() = default;

        /// Whether this window, or another one of ours, has the keyboard focus.
        [[nodiscard]] virtual bool isActive() const = 0;
        /// Whether this window is in front, also while a grab keeps the keyboard from it.
        [[nodiscard]] virtual bool isInFront() const = 0;
        /// Whether this window, or another one of ours, is under the pointer.
        [[nodiscard]] virtual bool isUnderPointer() const = 0;
        /// Whether an aid for typing into this window, as the word list of an input method, is under the
        /// pointer.
        [[nodiscard]] virtual bool isAidUnderPointer() const = 0;

        virtual void bringToFront() = 0;
        virtual void closeForUser() = 0;
    };

    PopoverFocus(Window& window, Clock& clock) : m_window(window), m_clock(clock) {}

    // State

    /// Whether a click elsewhere has just closed the popover. A click on the tray item is such a click, too,
    /// and is meant for the popover that the user still saw.
    [[nodiscard]] bool wasJustClosed() const { return m_justClosed.isNow(); }

    // Events

    /// The popover is shown, maybe again, and gets to the front.
    void shown();
    /// The popover is hidden, for whatever reason.
    void hidden();
    void activated();
    void deactivated();
    /// A mouse button, anywhere on the screen.
    void pressed();
    void released();
    /// Something is dragged over the popover; may be told a moment after it was released there.
    void dragged();
    /// The pointer has moved, anywhere on the screen.
    void moved();
    /// A key of window switchers was pressed or released, anywhere.
    void switched();
    /// The pointer has moved over the popover; reported in every session.
    void movedInside();
    /// The pointer has left the popover, or another window now covers the place.
    void left();

private:
    /// A flag that clears itself after some time.
    class Moment {
    public:
        void isNowFor(Clock& clock, std::chrono::milliseconds duration) {
            m_isNow = true;
            m_end = clock.after(duration, [this] { m_isNow = false; });
        }
        void isOver() {
            m_isNow = false;
            m_end.takeBack();
        }
        [[nodiscard]] bool isNow() const { return m_isNow; }

    private:
        bool m_isNow = false;
        ScheduledCall m_end;
    };

    /// Whether the pointer has moved recently. Restarts its timers at most every 50 ms, since mice report a
    /// thousand motions a second.
    class Motion {
    public:
        void isNow(Clock& clock);
        void isOver();
        [[nodiscard]] bool wasLately() const { return m_lately.isNow(); }

    private:
        Moment m_justNow;
        Moment m_lately;
    };

    void bringToFront();
    void lookLater(std::chrono::milliseconds pause);
    void look(std::chrono::milliseconds pause);
    void close();

    Window& m_window;
    Clock& m_clock;
    bool m_isOpen = false;
    bool m_hadFocus = false;  ///< since it was shown
    bool m_isPressedOutside = false;
    bool m_isDragged = false;  ///< since the press outside
    ScheduledCall m_closing;   ///< unless what was released turns out to be dragged
    Moment m_justShown;
    Moment m_justClosed;
    Moment m_awaited;  ///< asked for the keyboard focus a short time ago
    Motion m_motion;
    Motion m_motionInside;
    Moment m_justLeft;
    bool m_followsPointer = false;  ///< the focus has gone where the pointer went
    ScheduledCall m_look;
};

}  // namespace tralio
