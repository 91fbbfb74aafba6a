#include "app/services.h"

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

void Services::openWebsite() const {
    platform.workspace.openURL(QUrl(u"https://%1"_s.arg(hosts::website)));
}

}  // namespace tralio
