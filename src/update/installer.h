#pragma once

#include <QString>
#include <qcorotask.h>

namespace tralio {

/// What an update asks of the machine. Everything that could go wrong is asked for before the program ends:
/// afterwards nobody is left to say so. Failures are `LocalizedError`s.
class Installer {
public:
    virtual ~Installer() = default;

    /// Whether this copy of the program is in the care of a package manager, which brings newer ones itself.
    [[nodiscard]] virtual bool isPackaged() const = 0;

    /// Fails where the installer script would end the program without replacing it.
    virtual void checkProgram() const = 0;

    /// Fails unless the archive bears this Ed25519 signature of the key, whose public half is `publicKey`, in
    /// hexadecimal digits.
    virtual QCoro::Task<> checkSignature(QString zipPath, QByteArray signature, QString publicKey) = 0;

    /// Fails unless the archive is whole, has nothing in it but the application bundle for the script, and
    /// there is room for that.
    virtual QCoro::Task<> checkArchive(QString zipPath) = 0;

    /// Runs a shell script that outlives the program; fails when it does not start, or is not there.
    virtual void run(const QString& scriptPath) = 0;
};

}  // namespace tralio
