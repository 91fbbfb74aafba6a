#include "app/services.h"

#include <QCoreApplication>
#include <QDir>

#include "platform/linux/bundle/installer_runner.h"

namespace tralio {
namespace {

Services* instance = nullptr;

}  // namespace

Services::Services(const QString& storePath) : store(storePath) {
    instance = this;
}

Services::~Services() {
    instance = nullptr;
}

Services& Services::current() {
    Q_ASSERT(instance);
    return *instance;
}

UpdateService::Host Services::updateHost() {
    const InstallerRunner installers(
        InstallerRunner::installedHelpers(QCoreApplication::applicationDirPath()));
    return {.manifest = UpdateService::defaultManifest(),
        .currentVersion = QCoreApplication::applicationVersion(),
        .temporaryFolder = QDir::tempPath(),
        .runInstaller = [installers](const QString& path) { installers.run(path); },
        .terminate = &QCoreApplication::quit};
}

AppState& AppState::shared() {
    return Services::current().appState;
}

HotKeyService& HotKeyService::shared() {
    return Services::current().hotKeys;
}

AIService& AIService::shared() {
    return Services::current().ai;
}

OCRService& OCRService::shared() {
    return Services::current().ocr;
}

ScreenCaptureService& ScreenCaptureService::shared() {
    return Services::current().captures;
}

SpeechService& SpeechService::shared() {
    return Services::current().speech;
}

UpdateService& UpdateService::shared() {
    return Services::current().updates;
}

}  // namespace tralio
