#include "platform/linux/keyboard/copy_shortcut.h"

#include <QFile>
#include <QStandardPaths>

#include <algorithm>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// Names of terminals, lower-cased and blank-separated: those with a shortcut of their own, and those without
/// one. Of processes 15 characters are known.
constexpr QStringView terminalsWithShortcut =
    u" gnome-terminal gnome-terminal-server gnome-terminal- org.gnome.terminal org.gnome.console kgx "
    u"org.gnome.ptyxis ptyxis konsole org.kde.konsole yakuake org.kde.yakuake xfce4-terminal mate-terminal "
    u"lxterminal qterminal terminator tilix guake tilda roxterm alacritty kitty foot footclient "
    u"org.wezfurlong.wezterm wezterm-gui terminology ghostty com.mitchellh.ghostty deepin-terminal "
    u"io.elementary.terminal sakura cool-retro-term tabby hyper ";
constexpr QStringView terminalsWithoutShortcut =
    u" xterm uxterm urxvt urxvtd rxvt st st-256color stterm mlterm eterm aterm ";

bool isAmong(QStringView known, const QString& name) {
    return !name.isEmpty() && known.contains(QString(u' ' + name.toLower() + u' '));
}

/// Whether an installed application of this id says that it is no terminal.
bool isInstalledAsOther(const QString& id) {
    for (const QString& candidate : {id, id.toLower()}) {
        QFile entry(QStandardPaths::locate(QStandardPaths::ApplicationsLocation, candidate + u".desktop"_s));
        if (!candidate.isEmpty() && !candidate.contains(u'/') && entry.open(QIODevice::ReadOnly))
            return !entry.readAll().contains("TerminalEmulator");
    }
    return false;
}

}  // namespace

CopyShortcut copyShortcutIn(const CopyTarget& target) {
    const QStringList& names = target.names;
    const auto anyIn = [&](QStringView known) {
        return std::any_of(
            names.begin(), names.end(), [&](const QString& name) { return isAmong(known, name); });
    };
    if (anyIn(terminalsWithoutShortcut))
        return CopyShortcut::none;
    // The ones that tell of a terminal's role have the shortcut too.
    if (anyIn(terminalsWithShortcut) || target.focusIsTerminal == true)
        return CopyShortcut::controlShift;
    if (target.servesTerminal == true)
        return CopyShortcut::none;
    const bool isOther = target.focusIsTerminal == false || target.servesTerminal == false ||
        std::any_of(names.begin(), names.end(), isInstalledAsOther);
    return isOther ? CopyShortcut::control : CopyShortcut::none;
}

}  // namespace tralio
