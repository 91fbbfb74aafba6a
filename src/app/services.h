#pragma once

#include <QCoreApplication>
#include <QStandardPaths>

#include <memory>

#include "app/desktop.h"
#include "app/update_host.h"
#include "common/clock.h"
#include "engine/ai_service.h"
#include "hotkeys/hot_key_service.h"
#include "ocr/ocr_service.h"
#include "ocr/screen_capture_service.h"
#include "platform/linux/bundle/bundle_installer.h"
#include "platform/linux/helpers/helper_http_client.h"
#include "platform/linux/helpers/helper_text_recognizer.h"
#include "platform/linux/helpers/installation.h"
#include "platform/linux/secrets/secret_service.h"
#include "platform/linux/speech/speech_dispatcher.h"
#include "speech/speech_service.h"
#include "state/app_state.h"
#include "state/secret_key_value_store.h"
#include "state/sqlite_key_value_store.h"
#include "update/update_service.h"

namespace tralio {

/// All services of the process, constructed in the order of their dependencies. There is one such object,
/// which lives as long as the application object.
class Services {
public:
    explicit Services(const QString& storePath);
    Services(const Services&) = delete;
    Services& operator=(const Services&) = delete;

    SystemClock clock;
    AppState appState;
    SqliteKeyValueStore store;
    SecretService secrets;
    SecretKeyValueStore settings{store, secrets, clock};
    std::unique_ptr<Desktop> desktop = Desktop::probe(clock);
    HotKeyService::Platform platform = desktop->hotKeyPlatform(clock);
    HotKeyService hotKeys{platform};
    HelperHttpClient http{installation::helper(u"tralio-http"), clock};
    AIService ai{http};
    HelperTextRecognizer recognizer{installation::helper(u"tralio-ocr"), clock};
    OCRService ocr{recognizer};
    // This folder is private to the user: otherwise others could see what was on the screen.
    ScreenCaptureService captures{ocr, desktop->captureTool(), clock,
        QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation)};
    SpeechDispatcher synthesizer{clock};
    SpeechService speech{synthesizer};
    BundleInstaller installer{{.programs = QCoreApplication::applicationDirPath()}};
    UpdateService updates{http, installer, updateHost([this] { openWebsite(); })};

private:
    void openWebsite() const;
};

}  // namespace tralio
