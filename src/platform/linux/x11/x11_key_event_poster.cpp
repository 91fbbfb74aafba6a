#include "platform/linux/x11/x11_key_event_poster.h"

#include <X11/keysym.h>
#include <algorithm>
#include <vector>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include "platform/linux/x11/key_codes.h"
#include "platform/linux/x11/x11_workspace.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr quint32 commandFlag = 0x100000;
constexpr quint16 virtualKeyC = 8;
constexpr quint16 virtualKeyControl = 59;
constexpr quint16 virtualKeyShift = 56;

enum class CopyShortcut { control, controlShift, none };

/// Window classes, lower-cased, of terminals: those with a shortcut of their own, and those without one.
CopyShortcut copyShortcutIn(const QString& windowClass) {
    static const QStringList withShortcut{u"gnome-terminal"_s,
                                          u"gnome-terminal-server"_s,
                                          u"org.gnome.terminal"_s,
                                          u"org.gnome.console"_s,
                                          u"org.gnome.ptyxis"_s,
                                          u"konsole"_s,
                                          u"org.kde.konsole"_s,
                                          u"yakuake"_s,
                                          u"xfce4-terminal"_s,
                                          u"mate-terminal"_s,
                                          u"lxterminal"_s,
                                          u"qterminal"_s,
                                          u"terminator"_s,
                                          u"tilix"_s,
                                          u"guake"_s,
                                          u"alacritty"_s,
                                          u"kitty"_s,
                                          u"foot"_s,
                                          u"org.wezfurlong.wezterm"_s,
                                          u"terminology"_s,
                                          u"ghostty"_s,
                                          u"com.mitchellh.ghostty"_s,
                                          u"deepin-terminal"_s,
                                          u"sakura"_s,
                                          u"cool-retro-term"_s};
    static const QStringList withoutShortcut{u"xterm"_s, u"uxterm"_s,      u"urxvt"_s, u"rxvt"_s,
                                             u"st"_s,    u"st-256color"_s, u"eterm"_s, u"aterm"_s};
    if (withShortcut.contains(windowClass))
        return CopyShortcut::controlShift;
    return withoutShortcut.contains(windowClass) ? CopyShortcut::none : CopyShortcut::control;
}

using KeySymbols = std::unique_ptr<xcb_key_symbols_t, decltype(&xcb_key_symbols_free)>;

}  // namespace

X11KeyEventPoster::X11KeyEventPoster(X11Connection& connection) : m_connection(connection) {}

void X11KeyEventPoster::post(const KeyEvent& event) {
    if (event.flags & commandFlag) {
        postShortcut(event);
    } else if (const auto key = x11KeyCode(event.keyCode)) {
        fake(event.isKeyDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE, *key);
    }
    xcb_flush(m_connection.xcb());
}

void X11KeyEventPoster::postShortcut(const KeyEvent& event) {
    const auto key = shortcutKey(event.keyCode);
    const auto how = copyShortcutIn(
        X11Workspace::windowClass(m_connection, X11Workspace::activeWindow(m_connection)).toLower());
    if (!key || how == CopyShortcut::none)
        return;
    std::vector<quint8> keys{*x11KeyCode(virtualKeyControl)};
    if (how == CopyShortcut::controlShift)
        keys.push_back(*x11KeyCode(virtualKeyShift));
    keys.push_back(*key);
    if (!event.isKeyDown)
        std::reverse(keys.begin(), keys.end());
    for (const quint8 keyCode : keys)
        fake(event.isKeyDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keyCode);
}

void X11KeyEventPoster::postToProcess(qint32 /*processId*/, const KeyEvent& /*event*/) {}

void X11KeyEventPoster::fake(quint8 type, quint8 keyCode) {
    xcb_test_fake_input(m_connection.xcb(), type, keyCode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

std::optional<quint8> X11KeyEventPoster::shortcutKey(quint16 virtualKeyCode) const {
    if (virtualKeyCode == virtualKeyC) {
        const KeySymbols symbols{xcb_key_symbols_alloc(m_connection.xcb()), &xcb_key_symbols_free};
        const XcbPtr<xcb_keycode_t> keys{symbols ? xcb_key_symbols_get_keycode(symbols.get(), XK_c)
                                                 : nullptr};
        for (const xcb_keycode_t* key = keys.get(); key && *key != XCB_NO_SYMBOL; ++key) {
            // Only as the key's first symbol: a layout of two alphabets has the letter in its second group.
            if (xcb_key_symbols_get_keysym(symbols.get(), *key, 0) == XK_c)
                return *key;
        }
    }
    return x11KeyCode(virtualKeyCode);
}

}  // namespace tralio
