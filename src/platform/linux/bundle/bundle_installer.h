#pragma once

#include <functional>

#include "platform/linux/helpers/installation.h"
#include "update/installer.h"

namespace tralio {

/// Installs from archives where the program runs from the application bundle that the installer script
/// replaces.
class BundleInstaller final : public Installer {
public:
    struct Places {
        QString programs;  ///< the folder of the program itself
        QString helpers = installation::helperFolder(programs);
        QString bundle = QStringLiteral("/Applications/Tralio.app");  ///< what the script replaces
        QString shell = QStringLiteral("/bin/bash");
        QString verifier = helpers + QStringLiteral("/tralio-verify");
        QString unzip = QStringLiteral("unzip");
        qint64 largestContent = qint64(2) << 30;  ///< bytes that an archive may have in it
        std::function<qint64(const QString& folder)> freeSpace = &availableIn;  ///< in bytes
    };

    explicit BundleInstaller(Places places);

    [[nodiscard]] bool isPackaged() const override;
    void checkProgram() const override;
    QCoro::Task<> checkSignature(QString zipPath, QByteArray signature, QString publicKey) override;
    QCoro::Task<> checkArchive(QString zipPath) override;

    /// Starts the script in a session of its own and leaves it to itself; it finds our helper programs before
    /// those of the system. A file of another user is refused: the folder for temporary files may be
    /// everybody's.
    void run(const QString& scriptPath) override;

private:
    [[nodiscard]] static qint64 availableIn(const QString& folder);
    void checkRoom(qint64 content) const;

    Places m_places;
};

}  // namespace tralio
