#pragma once

#include "engine/ai_service.h"
#include "ocr/ocr_test_support.h"
#include "ocr/screen_capture_service.h"
#include "platform/linux/helpers/helper_http_client.h"
#include "speech/fake_synthesizer.h"
#include "speech/speech_service.h"
#include "state/app_settings.h"
#include "state/app_state.h"
#include "support/fake_desktop.h"
#include "support/memory_key_value_store.h"
#include "support/scripted_installer.h"
#include "support/stand_in_model.h"
#include "update/update_service.h"

namespace tralio {

/// What the windows stand on: the program's services over a desktop of fakes, with a stand-in in the place of
/// the model and of the update server.
struct ProgramOnFakes {
    /// The keyboard numbers its keys from here: 1002 is the D key.
    static constexpr quint32 firstScanCode = 1000;
    static std::optional<KeyCode> keyCode(quint32 scanCode) {
        return scanCode < firstScanCode ? std::nullopt : std::optional(KeyCode{scanCode - firstScanCode});
    }

    /// What is to be recognised from now on.
    void pictureSays(const QString& text) {
        recognizer.reads({{.boundingBox = {0.1, 0.5, 0.5, 0.1}, .candidates = {text}}});
    }

    FakeDesktop desktop;
    StandInModel model;
    MemoryKeyValueStore store;
    HotKeyService hotKeys{desktop.platform()};
    AppSettings settings{store, hotKeys};
    AppState appState;
    SystemClock httpClock;  ///< of a process in real time
    HelperHttpClient http{QStringLiteral(HTTP_PROGRAM), httpClock};
    AIService ai{http};
    ScriptedInstaller installer;
    int websiteVisits = 0;
    UpdateService updates{http, installer,
        {.manifest = QUrl(model.baseURL()),
            .currentVersion = QStringLiteral("1.0.9"),
            .temporaryFolder = {},
            .terminate = [] {},
            .openWebsite = [this] { ++websiteVisits; }}};
    ScriptedRecognizer recognizer;
    OCRService ocr{recognizer};
    DrawnRegion region;
    ScreenCaptureService captures{ocr, region, desktop.clock};
    FakeSynthesizer synthesizer;
    SpeechService speech{synthesizer};
};

}  // namespace tralio
