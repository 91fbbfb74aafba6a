#include "platform/linux/keyboard/copy_shortcut.h"

namespace tralio {
namespace {

/// Window classes and application ids, lower-cased and blank-separated, of terminals: those with a shortcut
/// of their own, and those without one.
constexpr QStringView terminalsWithShortcut =
    u" gnome-terminal gnome-terminal-server org.gnome.terminal org.gnome.console kgx org.gnome.ptyxis "
    u"konsole "
    u"org.kde.konsole yakuake xfce4-terminal mate-terminal lxterminal qterminal terminator tilix guake tilda "
    u"roxterm "
    u"alacritty kitty foot org.wezfurlong.wezterm terminology ghostty com.mitchellh.ghostty deepin-terminal "
    u"io.elementary.terminal sakura cool-retro-term tabby hyper ";
constexpr QStringView terminalsWithoutShortcut =
    u" xterm uxterm urxvt rxvt st st-256color stterm mlterm eterm aterm ";

}  // namespace

CopyShortcut copyShortcutIn(const QString& application) {
    const QString word = u' ' + application.toLower() + u' ';
    if (terminalsWithShortcut.contains(word))
        return CopyShortcut::controlShift;
    return terminalsWithoutShortcut.contains(word) ? CopyShortcut::none : CopyShortcut::control;
}

}  // namespace tralio
