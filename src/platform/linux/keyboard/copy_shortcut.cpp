#include "platform/linux/keyboard/copy_shortcut.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

#include "platform/linux/keyboard/terminals.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// The name of the program that a desktop entry starts, without its folder.
QString programOf(const QByteArray& entry) {
    const qsizetype start = entry.indexOf("\nExec=") + 6;
    const QStringList words = QString::fromUtf8(entry.mid(start, entry.indexOf('\n', start) - start))
                                  .split(u' ', Qt::SkipEmptyParts);
    const auto program = std::find_if(words.begin(), words.end(),
        [](const QString& word) { return !word.contains(u'=') && !word.endsWith(u"env"); });
    return program == words.end() ? QString() : QFileInfo(QString(*program).remove(u'"')).fileName();
}

/// Whether an installed application with this id is not declared as a terminal, and runs without serving one.
bool runsAsOther(const QString& id) {
    for (const QString& candidate : {id, id.toLower()}) {
        const QString path =
            QStandardPaths::locate(QStandardPaths::ApplicationsLocation, candidate + u".desktop"_s);
        QFile file(path);
        if (path.isEmpty() || candidate.contains(u'/') || !file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray entry = file.readAll();
        if (entry.contains("TerminalEmulator"))
            return false;
        const ProcessTable processes;
        const QList<qint32> running = processes.named(programOf(entry));
        return !running.isEmpty() && std::all_of(running.begin(), running.end(), [&](qint32 process) {
            return processes.servesTerminal(process) == false;
        });
    }
    return false;
}

}  // namespace

bool hasOtherKeys(const QStringList& names) {
    const QStringList known{u"emacs"_s, u"emacs-gtk"_s, u"emacs-lucid"_s, u"emacs-pgtk"_s, u"gvim"_s,
        u"nvim-qt"_s, u"neovide"_s, u"zathura"_s,
        // Screens of other machines, on which a terminal may be in front.
        u"vncviewer"_s, u"remmina"_s, u"org.remmina.remmina"_s, u"remote-viewer"_s, u"virt-viewer"_s,
        u"virt-manager"_s, u"virtualboxvm"_s, u"vmware"_s, u"xfreerdp"_s, u"wlfreerdp"_s, u"sdl-freerdp"_s,
        u"rdesktop"_s, u"krdc"_s, u"org.kde.krdc"_s, u"vinagre"_s, u"gnome-connections"_s,
        u"org.gnome.connections"_s, u"gnome-boxes"_s, u"org.gnome.boxes"_s, u"xephyr"_s, u"nxplayer.bin"_s,
        u"x2goagent"_s, u"anydesk"_s, u"teamviewer"_s, u"rustdesk"_s, u"ssh"_s};
    return std::any_of(names.begin(), names.end(), [&](const QString& name) {
        return known.contains(name, Qt::CaseInsensitive) || name.startsWith(u"qemu", Qt::CaseInsensitive);
    });
}

CopyShortcut copyShortcutIn(const CopyTarget& target) {
    const QStringList& names = target.names;
    if (isTerminalWithoutShortcut(names) || hasOtherKeys(names))
        return CopyShortcut::none;
    // Applications that report the terminal role have this shortcut, too.
    if (isTerminalWithShortcut(names) || target.focusIsTerminal == true)
        return CopyShortcut::controlShift;
    if (target.servesTerminal == true && target.focusIsTerminal != false)
        return CopyShortcut::none;
    const bool isOther = target.focusIsTerminal == false || target.servesTerminal == false ||
        std::any_of(names.begin(), names.end(), runsAsOther);
    return isOther ? CopyShortcut::control : CopyShortcut::none;
}

}  // namespace tralio
