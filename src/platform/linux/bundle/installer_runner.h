#pragma once

#include <QString>

namespace tralio {

/// Starts shell scripts that outlive the program.
class InstallerRunner final {
public:
    /// The scripts find the programs in `helperFolder` before those of the system.
    explicit InstallerRunner(QString helperFolder, QString shell = QStringLiteral("/bin/bash"));

    /// Where the program's own `open` is, for the program in `executableFolder`.
    [[nodiscard]] static QString installedHelpers(const QString& executableFolder);

    /// Starts the script at `path` in a session of its own and leaves it to itself. Fails with a
    /// `LocalizedError` when it does not start, and when the file is somebody else's: the folder for
    /// temporary files may be everybody's.
    void run(const QString& path) const;

private:
    QString m_helperFolder;
    QString m_shell;
};

}  // namespace tralio
