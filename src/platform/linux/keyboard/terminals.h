#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tralio {

// What is a terminal, or holds one: Control+C interrupts there.

/// Whether one of these names is that of a terminal in which Control+Shift+C copies.
[[nodiscard]] bool isTerminalWithShortcut(const QStringList& names);
/// The same of a terminal in which nothing typed does.
[[nodiscard]] bool isTerminalWithoutShortcut(const QStringList& names);
[[nodiscard]] bool isKnownTerminal(const QStringList& names);

/// The processes of one moment.
class ProcessTable final {
public:
    /// Reads /proc, which takes some milliseconds.
    ProcessTable();

    /// Whether the process, or one of its descendants, holds the master side of a pseudo-terminal, as an
    /// editor's terminal pane does. Descendants that are known terminals have a window of their own and do
    /// not count, nor does what runs in them. Absent where it cannot be told: the open files of a process
    /// with another group's rights are hidden.
    [[nodiscard]] std::optional<bool> servesTerminal(qint32 processId) const;

    /// The processes whose program has this name, of which the system knows 15 characters.
    [[nodiscard]] QList<qint32> named(const QString& name) const;

private:
    struct Process {
        qint32 id = 0;
        qint32 parent = 0;
        qint32 terminal = 0;  ///< at which it runs; 0 for none
        QString name;
    };

    QList<Process> m_processes;
};

}  // namespace tralio
