#pragma once

#include <functional>

#include "platform/linux/helpers/installation.h"
#include "update/installer.h"

namespace tralio {

/// Installs an update by the installer script, for a program that runs from the application bundle which that
/// script replaces.
class BundleInstaller final : public Installer {
public:
    struct Places {
        QString programs;  ///< the folder that the running program is in
        QString helpers = installation::helperFolder(programs);
        QString bundle = QStringLiteral("/Applications/Tralio.app");  ///< what the script replaces
        QString shell = QStringLiteral("/bin/bash");
        QString verifier = helpers + QStringLiteral("/tralio-verify");
        QString unzip = QStringLiteral("unzip");
        qint64 largestContent = qint64(2) << 30;  ///< bytes that an archive may contain, unpacked
        std::function<qint64(const QString& folder)> freeSpace = &availableIn;  ///< in bytes
    };

    explicit BundleInstaller(Places places);

    [[nodiscard]] bool isPackaged() const override;
    void checkProgram() const override;
    QCoro::Task<> checkSignature(QString zipPath, QByteArray signature, QString publicKey) override;
    QCoro::Task<> checkArchive(QString zipPath) override;

    /// Starts the script detached, in a session of its own; it finds our helper programs before those of the
    /// system. Throws if the script belongs to another user: the folder for temporary files may be writable
    /// for everybody.
    void run(const QString& scriptPath) override;

private:
    [[nodiscard]] static qint64 availableIn(const QString& folder);
    void checkRoom(qint64 content) const;

    Places m_places;
};

}  // namespace tralio
