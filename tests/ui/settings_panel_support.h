#pragma once

#include <QCoreApplication>
#include <QKeyEvent>

#include <memory>

#include "hotkeys/permission_watch.h"
#include "ui/program_on_fakes.h"
#include "ui/settings/settings_state.h"
#include "ui/undo/undo_offer.h"

namespace tralio {

/// The settings panel in the hands of a test.
class SettingsPanel : public testing::Test, protected ProgramOnFakes {
protected:
    /// The test's keyboard numbers its keys from here: 1002 is the D key.
    static constexpr quint32 firstScanCode = 1000;
    static constexpr quint16 keyS = 1;
    static constexpr quint16 keyD = 2;

    static std::optional<KeyCode> keyCode(quint32 scanCode) {
        return scanCode < firstScanCode ? std::nullopt : std::optional(KeyCode{scanCode - firstScanCode});
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

    PermissionWatch permissions{hotKeys, desktop.clock};
    UndoOffer undo{desktop.clock};
    std::unique_ptr<SettingsState> panel = std::make_unique<SettingsState>(SettingsState::Dependencies{
        settings, hotKeys, ai, updates, appState, permissions, undo, desktop.clock, keyCode, [] {}});
};

}  // namespace tralio
