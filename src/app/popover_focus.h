#pragma once

#include "common/clock.h"

namespace tralio {

/// Decides when what the user does elsewhere closes the popover, and asks for the keyboard while a window
/// manager is slow to give it. Knows no window.
///
/// - A click outside closes it when the button is released, unless it is on what helps with typing. Released
///   over the popover it was a drag, which ends there as a drop.
/// - The keyboard's going to another window closes it too: the user has gone there by keys, or by a click in
///   a session that tells of no clicks. It does not when it follows the pointer, nor while a grab keeps it
///   from every window for a moment, as the keys of an input method or the volume do.
///
/// Used from the main thread.
class PopoverFocus final {
public:
    /// What it asks of the popover's window, and does with it.
    class Window {
    public:
        virtual ~Window() = default;

        /// Whether it, or another window of ours, has the keyboard.
        [[nodiscard]] virtual bool isActive() const = 0;
        /// Whether it is the one in front, also while a grab keeps the keyboard from it.
        [[nodiscard]] virtual bool isInFront() const = 0;
        /// Whether it, or another window of ours, is under the pointer.
        [[nodiscard]] virtual bool isUnderPointer() const = 0;
        /// Whether what is there helps with typing into it, as the words of an input method do.
        [[nodiscard]] virtual bool isAidUnderPointer() const = 0;

        virtual void bringToFront() = 0;
        virtual void closeForUser() = 0;
    };

    PopoverFocus(Window& window, Clock& clock) : m_window(window), m_clock(clock) {}

    // State

    /// Whether a click elsewhere has just closed it. A click on the status item is such a click too, and
    /// means the popover that the user still saw.
    [[nodiscard]] bool wasJustClosed() const { return m_justClosed.isNow(); }

    // Events

    /// The popover is shown, maybe again, and brought to the front.
    void shown();
    /// The popover is hidden by whatever reason.
    void hidden();
    void activated();
    void deactivated();
    /// A button of the mouse, anywhere on the screen.
    void pressed();
    void released();
    /// The pointer has moved, anywhere on the screen.
    void moved();
    /// The pointer has moved over the popover, which every session tells.
    void movedInside();
    /// The popover has lost the pointer, which has gone or finds another window in its place.
    void left();

private:
    /// Something that was a moment ago.
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

    /// Motions of the pointer, which mice tell a thousand times a second.
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
    Moment m_justShown;
    Moment m_justClosed;
    Moment m_awaited;  ///< the keyboard, for which a window manager was asked
    Motion m_motion;
    Motion m_motionInside;
    Moment m_justLeft;
    bool m_followsPointer = false;  ///< the keyboard, which has gone where the pointer has gone
    ScheduledCall m_look;
};

}  // namespace tralio
