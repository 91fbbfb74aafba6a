#include "app/services.h"

#include <QDir>
#include <QUrl>

#include "engine/hosts.h"
#include "hotkeys/workspace.h"

namespace tralio {

using namespace Qt::StringLiterals;

Services::Services(const QString& storePath) : store(storePath) {
    appState.storeTrouble = store.trouble();
    store.onTrouble = [this](std::optional<StoreTrouble> trouble) { appState.storeTrouble = trouble; };
    appState.onStoreTroubleDismissed = [this] { store.acknowledgeTrouble(); };
    appState.isKeyAwaited = settings.isKeyAwaited();
    settings.onKeyAwaited = [this](bool awaited) { appState.isKeyAwaited = awaited; };
    appState.onUnlockKey = [this] { secrets.unlock(); };
}

UpdateService::Host Services::updateHost() const {
    const QUrl website(u"https://%1"_s.arg(hosts::website));
    return {.manifest = UpdateService::defaultManifest(),
        .currentVersion = QCoreApplication::applicationVersion(),
        .temporaryFolder = QDir::tempPath(),
        .publicKey = hosts::updateKey.toString(),
        .terminate = &QCoreApplication::quit,
        .openWebsite = [this, website] { platform.workspace.openURL(website); }};
}

}  // namespace tralio
