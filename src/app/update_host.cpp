#include "app/update_host.h"

#include <QCoreApplication>
#include <QDir>

#include <utility>

namespace tralio {

using namespace Qt::StringLiterals;

UpdateService::Host updateHost(std::function<void()> openWebsite) {
    return {.manifest = UpdateService::defaultManifest(),
        .currentVersion = QCoreApplication::applicationVersion(),
        .temporaryFolder = QDir::tempPath(),
        .publicKey = QStringLiteral(TRALIO_UPDATE_KEY),
        .terminate = &QCoreApplication::quit,
        .openWebsite = std::move(openWebsite)};
}

}  // namespace tralio
