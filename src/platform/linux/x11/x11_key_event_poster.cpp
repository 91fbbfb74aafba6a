#include "platform/linux/x11/x11_key_event_poster.h"

#include <algorithm>
#include <utility>
#include <vector>
#include <xcb/xtest.h>

#include "platform/linux/keyboard/key_codes.h"
#include "platform/linux/x11/key_symbols.h"
#include "platform/linux/x11/x11_workspace.h"

namespace tralio {
namespace {

/// Whether a key is chosen by its meaning in the current layout, and not by its position: modifiers, and the
/// letter of a shortcut.
bool isMeant(KeyCode key) {
    return key == KeyCode::c || (key >= KeyCode::rightCommand && key <= KeyCode::rightControl);
}

/// The keys with the meaning of that virtual key in the current layout.
std::vector<quint8> keysFor(const X11Connection& connection, KeyCode wanted) {
    std::vector<quint8> found;
    const Key* named = keyWith(wanted);
    if (named && isMeant(wanted)) {
        const KeySymbols symbols{xcb_key_symbols_alloc(connection.xcb())};
        const XcbPtr<xcb_keycode_t> keys{
            symbols ? xcb_key_symbols_get_keycode(symbols.get(), named->keysym) : nullptr};
        for (const xcb_keycode_t* key = keys.get(); key && *key != XCB_NO_SYMBOL; ++key) {
            // Compare the first symbol only: a layout for two alphabets has the letter in its second group,
            // too.
            if (xcb_key_symbols_get_keysym(symbols.get(), *key, 0) == named->keysym)
                found.push_back(*key);
        }
    }
    if (const auto place = x11KeyCode(wanted); place && std::ranges::find(found, *place) == found.end())
        found.push_back(*place);
    return found;
}

/// The key to press among these.
std::optional<quint8> keyFor(const X11Connection& connection, KeyCode wanted) {
    const auto keys = keysFor(connection, wanted);
    return keys.empty() ? std::nullopt : std::optional(keys.front());
}

}  // namespace

X11KeyEventPoster::X11KeyEventPoster(
    X11Connection& connection, X11HotKeys& hotKeys, FocusIsTerminal focusIsTerminal)
    : m_connection(connection), m_hotKeys(hotKeys), m_focusIsTerminal(std::move(focusIsTerminal)) {}

CopyShortcut X11KeyEventPoster::shortcutInFront() const {
    CopyTarget target = X11Workspace::copyTarget(m_connection, X11Workspace::activeWindow(m_connection));
    target.focusIsTerminal = m_focusIsTerminal();
    return copyShortcutIn(target);
}

void X11KeyEventPoster::post(const KeyEvent& event) {
    const bool isShortcut = event.modifiers.testFlag(Modifier::command);
    if (isShortcut && event.isKeyDown)
        pressShortcut(event.key);
    else if (isShortcut)
        releaseShortcut();
    else if (event.isKeyDown)
        pressKey(event.key);
    else
        releaseKey(event.key);
    xcb_flush(m_connection.xcb());
}

void X11KeyEventPoster::releaseKey(KeyCode key) {
    const quint16 held = m_hotKeys.beginFeignedRelease();
    for (const quint8 each : keysFor(m_connection, key))  // any of them may be held
        fake(XCB_KEY_RELEASE, each);
    m_hotKeys.endFeignedRelease(held);
}

void X11KeyEventPoster::pressKey(KeyCode wanted) {
    if (const auto key = keyFor(m_connection, wanted))
        fake(XCB_KEY_PRESS, *key);
}

void X11KeyEventPoster::pressShortcut(KeyCode shortcutKey) {
    const CopyShortcut how = shortcutInFront();
    const auto control = keyFor(m_connection, KeyCode::leftControl);
    const auto shift = keyFor(m_connection, KeyCode::leftShift);
    const auto key = keyFor(m_connection, shortcutKey);
    if (how == CopyShortcut::none || !control || !shift || !key)
        return;
    m_shortcut = {*control, *key};
    Modifiers modifiers = Modifier::control;
    if (how == CopyShortcut::controlShift) {
        m_shortcut = {*control, *shift, *key};
        modifiers |= Modifier::shift;
    }
    if (m_hotKeys.letPass(*key, modifiers))
        fake(XCB_KEY_RELEASE, *key);  // the server ignores the press of a key that is down
    for (const quint8 down : m_shortcut)
        fake(XCB_KEY_PRESS, down);
}

void X11KeyEventPoster::releaseShortcut() {
    // Release exactly what was pressed, whatever window is in front by now.
    std::for_each(m_shortcut.rbegin(), m_shortcut.rend(), [this](quint8 key) { fake(XCB_KEY_RELEASE, key); });
    if (!m_shortcut.empty())
        m_hotKeys.endPass();
    m_shortcut.clear();
}

void X11KeyEventPoster::postToProcess(qint32 /*processId*/, const KeyEvent& /*event*/) {}

void X11KeyEventPoster::fake(quint8 type, quint8 keyCode) {
    const xcb_void_cookie_t request =
        xcb_test_fake_input(m_connection.xcb(), type, keyCode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    if (type == XCB_KEY_RELEASE)
        m_hotKeys.noteFeignedRelease(keyCode, request.sequence);
}

}  // namespace tralio
