#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace tralio {

/// A shell that sees the machine's folders, but has an empty /Applications of its own, and no processes but
/// those that it starts. They end with this object. Needs no rights: the machine's users may make namespaces.
class OwnMachine final {
public:
    explicit OwnMachine(const QProcessEnvironment& environment);
    OwnMachine(const OwnMachine&) = delete;
    OwnMachine& operator=(const OwnMachine&) = delete;
    ~OwnMachine();

    /// What the command prints on its standard output, without blanks at the ends.
    QString run(const QString& command);

    /// The files that the running processes were started from, be they still there or not.
    QStringList runningPrograms();

private:
    QTemporaryDir m_root;
    QProcess m_shell;
};

}  // namespace tralio
