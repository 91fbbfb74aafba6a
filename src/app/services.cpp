#include "app/services.h"

#include <QCoreApplication>
#include <QDir>

#include "platform/linux/bundle/installer_runner.h"

namespace tralio {
Services::Services(const QString& storePath) : store(storePath) {}

UpdateService::Host Services::updateHost() {
    const InstallerRunner installers(
        InstallerRunner::installedHelpers(QCoreApplication::applicationDirPath()));
    return {.manifest = UpdateService::defaultManifest(),
        .currentVersion = QCoreApplication::applicationVersion(),
        .temporaryFolder = QDir::tempPath(),
        .runInstaller = [installers](const QString& path) { installers.run(path); },
        .terminate = &QCoreApplication::quit};
}

}  // namespace tralio
