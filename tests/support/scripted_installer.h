#pragma once

#include <qcorofuture.h>

#include "common/localized_error.h"
#include "support/files.h"
#include "support/testing.h"
#include "update/installer.h"

namespace tralio {

/// An Installer for a machine in the state that the test sets; nothing is installed.
struct ScriptedInstaller final : Installer {
    bool isPackaged() const override { return packaged; }
    void checkProgram() const override { failWith(programFault); }
    QCoro::Task<> checkArchive(QString zipPath) override {
        checkedArchive = zipPath;
        if (const auto held = checking)
            co_await held->future();
        failWith(archiveFault);
    }
    QCoro::Task<> checkSignature(QString zipPath, QByteArray signature, QString publicKey) override {
        checkedSignature = QString::fromUtf8(contentOf(zipPath) + ' ' + signature) + u' ' + publicKey;
        failWith(signatureFault);
        co_return;
    }
    void run(const QString& scriptPath) override {
        scripts += scriptPath;
        failWith(startFault);
        if (!QFileInfo(scriptPath).isFile())
            throw LocalizedError(QStringLiteral("no script"));
    }

    bool packaged = false;
    // Faults, as error messages.
    std::optional<QString> programFault;
    std::optional<QString> signatureFault;
    std::optional<QString> archiveFault;
    std::optional<QString> startFault;

    std::shared_ptr<QPromise<void>> checking;  ///< if set, the check takes until it is finished
    QString checkedSignature;                  ///< content, signature and key of the last check
    QString checkedArchive;
    QStringList scripts;  ///< the scripts that were run

private:
    static void failWith(const std::optional<QString>& fault) {
        if (fault)
            throw LocalizedError(*fault);
    }
};

}  // namespace tralio
