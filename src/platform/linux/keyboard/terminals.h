#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tralio {

// Which programs are terminals or contain one: Control+C interrupts there.

/// Whether one of these names is of a terminal in which Control+Shift+C copies.
[[nodiscard]] bool isTerminalWithShortcut(const QStringList& names);
/// Whether one of these names is of a terminal that has no shortcut for copying.
[[nodiscard]] bool isTerminalWithoutShortcut(const QStringList& names);
[[nodiscard]] bool isKnownTerminal(const QStringList& names);

/// A snapshot of the running processes.
class ProcessTable final {
public:
    /// Reads /proc, which takes some milliseconds.
    ProcessTable();

    /// Whether the process, or one of its descendants, holds the master side of a pseudo-terminal, as an
    /// editor's terminal pane does. Descendants that are known terminals have a window of their own and do
    /// not count, nor does what runs in them. Absent where it cannot be told: the open files of a process
    /// with another group's rights are hidden.
    [[nodiscard]] std::optional<bool> servesTerminal(qint32 processId) const;

    /// The processes whose program has this name; the kernel keeps only its first 15 characters.
    [[nodiscard]] QList<qint32> named(const QString& name) const;

private:
    struct Process {
        qint32 id = 0;
        qint32 parent = 0;
        qint32 terminal = 0;  ///< the controlling terminal; 0 for none
        QString name;
    };

    QList<Process> m_processes;
};

}  // namespace tralio
