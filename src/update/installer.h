#pragma once

#include <QString>
#include <qcorotask.h>

namespace tralio {

/// The system operations of an update. Everything that can go wrong is checked before the program ends, since
/// afterwards nobody is left to report it. Failures are `LocalizedError`s.
class Installer {
public:
    virtual ~Installer() = default;

    /// Whether a package manager manages this copy of the program, and will update it.
    [[nodiscard]] virtual bool isPackaged() const = 0;

    /// Throws if the installer script would end the program without replacing it.
    virtual void checkProgram() const = 0;

    /// Throws unless `signature` is the archive's Ed25519 signature by the key whose public half is
    /// `publicKey`, in hexadecimal digits.
    virtual QCoro::Task<> checkSignature(QString zipPath, QByteArray signature, QString publicKey) = 0;

    /// Throws unless the archive is intact, contains only the application bundle that the script expects, and
    /// there is enough disk space for that.
    virtual QCoro::Task<> checkArchive(QString zipPath) = 0;

    /// Runs a shell script that outlives the program; throws if it does not start or does not exist.
    virtual void run(const QString& scriptPath) = 0;
};

}  // namespace tralio
