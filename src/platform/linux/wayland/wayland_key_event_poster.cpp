#include "platform/linux/wayland/wayland_key_event_poster.h"

#include <algorithm>
#include <linux/input-event-codes.h>
#include <utility>

#include "platform/linux/keyboard/copy_shortcut.h"
#include "platform/linux/wayland/front_application.h"

namespace tralio {
namespace {

/// In milliseconds; the user is waiting.
constexpr int greetingLimit = 500;

}  // namespace

WaylandKeyEventPoster::WaylandKeyEventPoster(
    const WaylandConnection& session, const FrontApplication& front, AskTarget askTarget)
    : m_session(session), m_front(front), m_askTarget(std::move(askTarget)) {}

bool WaylandKeyEventPoster::isGranted() const {
    return m_session.versionOf("zwp_virtual_keyboard_manager_v1") > 0;
}

bool WaylandKeyEventPoster::canPost() const {
    // If the compositor does not report the application in front, it might be a terminal.
    return isGranted() && !m_front.applicationId().isEmpty();
}

bool WaylandKeyEventPoster::canPressCopy() const {
    return canPost() && shortcutInFront() != CopyShortcut::none;
}

CopyShortcut WaylandKeyEventPoster::shortcutInFront() const {
    CopyTarget target = m_askTarget();
    target.names += m_front.applicationId();
    return copyShortcutIn(target);
}

void WaylandKeyEventPoster::post(const KeyEvent& event) {
    if (!event.modifiers.testFlag(Modifier::command))
        return;
    if (event.isKeyDown)
        pressShortcut(event.key);
    else
        releaseShortcut();
}

void WaylandKeyEventPoster::openKeyboard() {
    if (!m_connection || m_connection->isLost())
        m_connection = WaylandConnection::open(greetingLimit);
    m_keyboard = m_connection ? VirtualKeyboard::open(*m_connection) : nullptr;
}

void WaylandKeyEventPoster::pressShortcut(KeyCode shortcutKey) {
    const auto how = shortcutInFront();
    const Key* key = keyWith(shortcutKey);
    if (how == CopyShortcut::none || !key || !canPost())
        return;
    openKeyboard();
    if (!m_keyboard)
        return;
    m_pressed = {KEY_LEFTCTRL, key->evdev};
    if (how == CopyShortcut::controlShift)
        m_pressed = {KEY_LEFTCTRL, KEY_LEFTSHIFT, key->evdev};
    for (const quint32 code : m_pressed)
        m_keyboard->setKey(code, true);
}

void WaylandKeyEventPoster::releaseShortcut() {
    if (!m_keyboard)
        return;
    std::for_each(
        m_pressed.rbegin(), m_pressed.rend(), [this](quint32 code) { m_keyboard->setKey(code, false); });
    m_keyboard.reset();
}

void WaylandKeyEventPoster::postToProcess(qint32 /*processId*/, const KeyEvent& /*event*/) {}

}  // namespace tralio
