#pragma once

#include <QCoreApplication>
#include <QKeyEvent>

#include <gmock/gmock.h>
#include <memory>

#include "engine/ai_service.h"
#include "engine/in_process_http_client.h"
#include "state/app_settings.h"
#include "state/app_state.h"
#include "support/debug_log_file.h"
#include "support/event_loop.h"
#include "support/fake_desktop.h"
#include "support/memory_key_value_store.h"
#include "support/print_to.h"
#include "support/stand_in_model.h"
#include "ui/settings/settings_state.h"
#include "update/update_service.h"

namespace tralio {

/// The settings panel in the hands of a test.
class SettingsPanel : public testing::Test {
protected:
    /// The test's keyboard numbers its keys from here: 1002 is the D key.
    static constexpr quint32 firstScanCode = 1000;
    static constexpr quint16 keyS = 1;
    static constexpr quint16 keyD = 2;

    static std::optional<quint16> keyCode(quint32 scanCode) {
        return scanCode < firstScanCode ? std::nullopt : std::optional(quint16(scanCode - firstScanCode));
    }

    /// A key goes down at a position; `key` and `text` are what the keyboard's layout makes of it.
    static void press(QObject* receiver, quint16 position, Qt::KeyboardModifiers modifiers = {},
                      int key = Qt::Key_D, const QString& text = QStringLiteral("d")) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, firstScanCode + position, 0, 0, text);
        QCoreApplication::sendEvent(receiver, &event);
    }
    /// Lets happen what was put off.
    void settle() {
        desktop.clock.advance(std::chrono::milliseconds(0));
        EXPECT_TRUE(nextTurn());
    }

    DebugLogFile log;
    FakeDesktop desktop;
    StandInModel standIn;
    MemoryKeyValueStore store;
    HotKeyService hotKeys{desktop.platform()};
    AppSettings settings{store, hotKeys};
    InProcessHttpClient http{desktop.clock};
    AIService ai{http};
    UpdateService updates{http,
                          {.manifest = {},
                           .currentVersion = QStringLiteral("1.0.9"),
                           .temporaryFolder = {},
                           .runInstaller = {},
                           .terminate = {}}};
    AppState appState;
    int guidesOpened = 0;
    std::unique_ptr<SettingsState> panel = std::make_unique<SettingsState>(SettingsState::Services{
        settings, hotKeys, ai, updates, appState, desktop.clock, keyCode, [this] { ++guidesOpened; }});
};

}  // namespace tralio
