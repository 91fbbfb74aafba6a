#include "app/popover_focus.h"

#include <utility>

namespace tralio {
namespace {

using namespace std::chrono_literals;

/// A click elsewhere takes the focus away, and on the tray item it also triggers the action. Both happen
/// within this time.
constexpr auto sameClick = 300ms;
constexpr auto focusPoll = 50ms;
constexpr std::chrono::milliseconds longestFocusPoll = 1s;
/// How long a window manager may take to give the keyboard focus.
constexpr auto focusPatience = 2s;
/// How long a busy program may take to announce what it drags.
constexpr auto dragPatience = 300ms;
/// Window managers let the focus follow the pointer after 200 to 250 ms.
constexpr auto focusDelay = 600ms;
/// A compositor reports at once that pointer and keyboard have left, but through Xwayland the focus event
/// arrives up to 0.1 s later. Moving to another window and clicking there takes longer than this.
constexpr auto sameMotion = 150ms;

}  // namespace

void PopoverFocus::Motion::isNow(Clock& clock) {
    if (m_justNow.isNow())
        return;
    m_justNow.isNowFor(clock, focusPoll);
    m_lately.isNowFor(clock, focusDelay);
}

void PopoverFocus::Motion::isOver() {
    m_justNow.isOver();
    m_lately.isOver();
}

void PopoverFocus::shown() {
    // Only by what the window manager says: Qt's activation event may still be on its way.
    const bool isInFrontAlready = std::exchange(m_isOpen, true) && m_window.isInFront();
    m_isPressedOutside = false;
    m_closing.takeBack();
    m_hadFocus = m_window.isActive() || isInFrontAlready;
    m_justClosed.isOver();
    m_motion.isOver();
    m_motionInside.isOver();
    m_justLeft.isOver();
    m_followsPointer = false;
    m_justShown.isNowFor(m_clock, sameClick);
    bringToFront();
    if (m_hadFocus)
        m_awaited.isOver();
}

void PopoverFocus::hidden() {
    m_isOpen = false;
    m_look.takeBack();
    m_closing.takeBack();
}

void PopoverFocus::bringToFront() {
    m_window.bringToFront();
    if (m_window.isActive())
        return;
    m_awaited.isNowFor(m_clock, focusPatience);
    lookLater(focusPoll);
}

void PopoverFocus::activated() {
    m_hadFocus = true;
    m_awaited.isOver();
    m_followsPointer = false;
    m_motion.isOver();  // earlier motions of the pointer cannot be why the focus is lost later
}

void PopoverFocus::deactivated() {
    m_followsPointer = m_justLeft.isNow();
    lookLater(focusPoll);
}

void PopoverFocus::pressed() {
    m_isDragged = false;
    m_closing.takeBack();
    m_isPressedOutside = m_isOpen && !m_window.isUnderPointer() && !m_window.isAidUnderPointer();
}

void PopoverFocus::released() {
    if (!std::exchange(m_isPressedOutside, false) || !m_isOpen)
        return;
    if (!m_window.isUnderPointer())
        close();
    else if (m_isDragged)
        bringToFront();
    else
        m_closing = m_clock.after(dragPatience, [this] { close(); });
}

void PopoverFocus::dragged() {
    m_isDragged = true;
    if (std::exchange(m_closing, {}))
        bringToFront();
}

void PopoverFocus::moved() {
    if (m_isOpen)
        m_motion.isNow(m_clock);
}

void PopoverFocus::switched() {
    m_motion.isOver();  // the switcher takes the focus away, not a motion before it
}

void PopoverFocus::movedInside() {
    if (m_isOpen)
        m_motionInside.isNow(m_clock);
}

void PopoverFocus::left() {
    if (!m_motionInside.wasLately())
        return;  // another window covers the popover; the pointer has not moved
    m_justLeft.isNowFor(m_clock, sameMotion);
    if (m_look)  // the loss of focus was reported before the pointer's leaving
        m_followsPointer = true;
}

void PopoverFocus::lookLater(std::chrono::milliseconds pause) {
    m_look = m_clock.after(
        pause, [this, pause] { look(pause); });
}

void PopoverFocus::look(std::chrono::milliseconds pause) {
    const ScheduledCall made = std::exchange(m_look, {});
    if (!m_isOpen || m_window.isActive() || m_isPressedOutside)
        return;
    const bool followsPointer = m_followsPointer || (m_motion.wasLately() && !m_window.isUnderPointer());
    if (m_justShown.isNow() || m_window.isInFront()) {
        // The event may be from before the popover was shown, or from a short keyboard grab. If another
        // window becomes active meanwhile, no further event says so: look again, ever more rarely, since it
        // may be a locked screen.
        lookLater(std::min(pause + pause / 10, longestFocusPoll));
    } else if (m_awaited.isNow()) {
        m_window.bringToFront();
        lookLater(focusPoll);
    } else if (m_hadFocus && !followsPointer) {  // some window managers never give the popover the focus
        close();
    }
}

void PopoverFocus::close() {
    m_window.closeForUser();
    m_justClosed.isNowFor(m_clock, sameClick);
}

}  // namespace tralio
