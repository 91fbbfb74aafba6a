#include "platform/linux/keyboard/terminals.h"

#include <QDir>
#include <QFile>
#include <QSet>

#include <algorithm>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// Lower-case, separated by blanks.
constexpr QStringView terminalsWithShortcut =
    u" gnome-terminal gnome-terminal-server gnome-terminal- org.gnome.terminal org.gnome.console kgx "
    u"org.gnome.ptyxis ptyxis konsole org.kde.konsole yakuake org.kde.yakuake xfce4-terminal mate-terminal "
    u"lxterminal qterminal terminator tilix guake tilda roxterm alacritty kitty foot footclient "
    u"org.wezfurlong.wezterm wezterm-gui terminology ghostty com.mitchellh.ghostty deepin-terminal "
    u"io.elementary.terminal sakura cool-retro-term tabby hyper ";
constexpr QStringView terminalsWithoutShortcut =
    u" xterm uxterm urxvt urxvtd rxvt st st-256color stterm mlterm eterm aterm ";

constexpr qsizetype longestName = 15;

bool isAnyAmong(QStringView known, const QStringList& names) {
    return std::any_of(
        names.begin(), names.end(),
        [&](const QString& name) {
            return !name.isEmpty() && known.contains(QString(u' ' + name.toLower() + u' '));
        });
}

/// Whether a device number (as in /proc/PID/stat) is that of a pseudo-terminal, and not of a console or
/// serial line.
bool isServed(qint32 terminal) {
    const int major = terminal >> 8 & 0xfff;
    return major >= 136 && major <= 143;
}

/// Whether the process holds the master side of a pseudo-terminal, by its open files; absent where they are
/// hidden.
std::optional<bool> hasTerminalOpenForServing(qint32 processId) {
    const QDir files(u"/proc/%1/fd"_s.arg(processId));
    const QStringList names = files.entryList(QDir::Files | QDir::Dirs | QDir::System | QDir::NoDotAndDotDot);
    if (names.isEmpty())
        return std::nullopt;
    return std::any_of(names.begin(), names.end(), [&](const QString& name) {
        const QString target = QFile::symLinkTarget(files.filePath(name));
        return target == u"/dev/ptmx" || target == u"/dev/pts/ptmx";
    });
}

}  // namespace

bool isTerminalWithShortcut(const QStringList& names) {
    return isAnyAmong(terminalsWithShortcut, names);
}

bool isTerminalWithoutShortcut(const QStringList& names) {
    return isAnyAmong(terminalsWithoutShortcut, names);
}

bool isKnownTerminal(const QStringList& names) {
    return isTerminalWithShortcut(names) || isTerminalWithoutShortcut(names);
}

ProcessTable::ProcessTable() {
    const QStringList entries = QDir(u"/proc"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::NoSort);
    for (const QString& entry : entries) {
        QFile stat(u"/proc/%1/stat"_s.arg(entry));
        if (!entry.front().isDigit() || !stat.open(QIODevice::ReadOnly))
            continue;
        // The fields: 4711 (a name (of any kind)) S parent group session terminal …
        const QByteArray line = stat.readAll();
        const qsizetype nameStart = line.indexOf('(') + 1;
        const qsizetype nameEnd = line.lastIndexOf(')');
        const QByteArrayList fields = line.mid(nameEnd + 2).split(' ');
        m_processes.push_back({entry.toInt(), fields.value(1).toInt(), fields.value(4).toInt(),
            QString::fromUtf8(line.mid(nameStart, nameEnd - nameStart))});
    }
}

std::optional<bool> ProcessTable::servesTerminal(qint32 processId) const {
    const auto itself = hasTerminalOpenForServing(processId);
    const auto found = std::find_if(m_processes.begin(), m_processes.end(),
        [=](const Process& process) { return process.id == processId; });
    if (itself == true || found == m_processes.end())
        return itself;
    QList<qint32> family{processId};
    for (qsizetype next = 0; next < family.size(); ++next) {
        for (const Process& process : m_processes) {
            if (process.parent != family.at(next) || isKnownTerminal({process.name}))
                continue;
            // A descendant whose controlling terminal is not the process's own got it from somebody in this
            // family.
            const bool isAtOne = isServed(process.terminal) && process.terminal != found->terminal;
            if (isAtOne || hasTerminalOpenForServing(process.id) == true)
                return true;
            family.push_back(process.id);
        }
    }
    return itself;
}

QList<qint32> ProcessTable::named(const QString& name) const {
    QList<qint32> ids;
    for (const Process& process : m_processes)
        if (!name.isEmpty() && process.name == name.left(longestName))
            ids.push_back(process.id);
    return ids;
}

}  // namespace tralio
