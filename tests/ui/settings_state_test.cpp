#include "ui/settings/settings_state.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QSignalSpy>

#include "hotkeys/permission_watch.h"
#include "ui/program_on_fakes.h"
#include "ui/undo/undo_offer.h"

namespace tralio {
namespace {

using enum HotKeyRecordTarget;

/// Stands for the control with the focus.
class Receiver final : public QObject {
public:
    int presses = 0;

protected:
    bool event(QEvent* event) override {
        presses += event->type() == QEvent::KeyPress ? 1 : 0;
        return QObject::event(event);
    }
};

/// The settings panel in the hands of a test.
class SettingsStateTest : public testing::Test, protected ProgramOnFakes {
protected:
    static constexpr quint16 keyD = 2;

    /// A key goes down at a position; `key` and `text` are what the keyboard's layout makes of it.
    static void press(QObject* receiver, quint16 position, Qt::KeyboardModifiers modifiers = {},
        int key = Qt::Key_D, const QString& text = u"d"_s) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, firstScanCode + position, 0, 0, text);
        QCoreApplication::sendEvent(receiver, &event);
    }
    /// Lets happen what was put off.
    void settle() {
        desktop.clock.advance(0ms);
        EXPECT_TRUE(nextTurn());
    }

    PermissionWatch permissions{hotKeys, desktop.clock};
    UndoOffer undo{desktop.clock};
    std::unique_ptr<SettingsState> panel = std::make_unique<SettingsState>(SettingsState::Dependencies{
        settings, hotKeys, ai, updates, appState, permissions, undo, desktop.clock, keyCode, [] {}});
    Receiver focused;
};

TEST_F(SettingsStateTest, a_combination_is_recorded_by_position_and_kept_from_the_focused_control) {
    panel->startRecording(textSelection);
    press(&focused, keyD, Qt::AltModifier | Qt::MetaModifier, 0x412, u"в"_s);
    EXPECT_EQ(focused.presses, 0);
    EXPECT_EQ(panel->recordingTarget(), textSelection) << "still inside the key's delivery";

    settle();
    EXPECT_EQ(panel->recordingTarget(), std::nullopt);
    EXPECT_EQ(settings.hotKeyDisplay(), u"⌥ ⌘ D");
    EXPECT_EQ(settings.hotKeyModifiers(), 2048U + 256U);
    EXPECT_THAT(desktop.hotKeys.registrations(),
        testing::ElementsAre(
            FakeHotKeyPlatform::Request{{KeyCode::d, Modifier::option | Modifier::command}, textHotKeyID}));

    press(&focused, keyD, Qt::AltModifier);
    EXPECT_EQ(focused.presses, 1) << "recording is over";
}

TEST_F(SettingsStateTest, other_keys_reach_the_focused_control_and_recording_goes_on) {
    panel->startRecording(textSelection);
    press(&focused, keyD);
    press(&focused, keyD, Qt::ShiftModifier);
    press(&focused, keyD, Qt::KeypadModifier | Qt::GroupSwitchModifier);
    press(&focused, 58, Qt::AltModifier, Qt::Key_Alt);
    press(&focused, 55, Qt::ControlModifier | Qt::MetaModifier, Qt::Key_Super_L);
    press(&focused, 56, Qt::AltModifier, Qt::Key_unknown);  // Alt+Shift that changes the layout
    QKeyEvent withoutPosition(QEvent::KeyPress, Qt::Key_Print, Qt::AltModifier, firstScanCode - 1, 0, 0);
    QCoreApplication::sendEvent(&focused, &withoutPosition);
    EXPECT_EQ(focused.presses, 7);
    settle();
    EXPECT_EQ(panel->recordingTarget(), textSelection);
    EXPECT_EQ(settings.hotKeyDisplay(), AppSettings::defaultHotKeyDisplay);
}

TEST_F(SettingsStateTest, escape_ends_recording_wherever_the_layout_has_it) {
    constexpr quint16 keyEscape = 53;
    constexpr quint16 keyCapsLock = 57;  // swapped with Escape
    for (const auto& [position, modifiers] :
        {std::pair(keyCapsLock, Qt::NoModifier), std::pair(keyEscape, Qt::AltModifier)}) {
        panel->startRecording(screenOCR);
        press(&focused, position, modifiers, Qt::Key_Escape);
        settle();
        EXPECT_EQ(panel->recordingTarget(), std::nullopt);
    }
    EXPECT_EQ(focused.presses, 0);
    EXPECT_EQ(settings.ocrHotKeyDisplay(), AppSettings::defaultOcrHotKeyDisplay);
}

TEST_F(SettingsStateTest, recording_one_shortcut_ends_recording_the_other) {
    panel->toggleRecording(textSelection);
    panel->toggleRecording(screenOCR);
    EXPECT_EQ(panel->recordingTarget(), screenOCR);
    press(&focused, keyD, Qt::ControlModifier);
    settle();
    EXPECT_EQ(settings.ocrHotKeyDisplay(), u"⌃ D");
    EXPECT_EQ(settings.hotKeyDisplay(), AppSettings::defaultHotKeyDisplay);

    panel->toggleRecording(textSelection);
    panel->toggleRecording(textSelection);
    EXPECT_EQ(panel->recordingTarget(), std::nullopt);
    panel->startRecording(textSelection);
    panel->panelDisappeared();
    press(&focused, keyD, Qt::AltModifier);
    EXPECT_EQ(focused.presses, 1);
}

TEST_F(SettingsStateTest, a_registered_hot_key_is_recorded_instead_of_running) {
    int texts = 0;
    int captures = 0;
    hotKeys.registerGlobalHotKeys(
        2, 768, [&] { ++texts; }, 1, 768, [&] { ++captures; });
    const auto pressHotKey = [&](HotKeyID id) {
        desktop.hotKeys.handler(id);
        settle();
    };
    panel->startRecording(textSelection);
    pressHotKey(textHotKeyID);
    EXPECT_EQ(panel->recordingTarget(), std::nullopt);
    EXPECT_EQ(settings.hotKeyDisplay(), u"⌘ ⇧ D");

    panel->startRecording(screenOCR);
    panel->startRecording(textSelection);
    pressHotKey(ocrHotKeyID);
    EXPECT_EQ(panel->recordingTarget(), textSelection) << "the other's combination is not taken";
    EXPECT_EQ(settings.hotKeyKeyCode(), 2U);
    panel->startRecording(screenOCR);
    pressHotKey(ocrHotKeyID);
    EXPECT_EQ(panel->recordingTarget(), std::nullopt);
    EXPECT_EQ(settings.ocrHotKeyDisplay(), u"⌘ ⇧ S");
    EXPECT_EQ(texts + captures, 0);

    panel->startRecording(screenOCR);
    panel.reset();
    pressHotKey(textHotKeyID);
    pressHotKey(ocrHotKeyID);
    EXPECT_EQ(texts, 1);
    EXPECT_EQ(captures, 1);
}

TEST_F(SettingsStateTest, a_hot_key_that_does_not_work_says_why_and_which_of_the_two_it_is) {
    EXPECT_EQ(panel->hotKeyTrouble(textSelection), std::nullopt);
    hotKeys.registerGlobalHotKeys(
        2, 768, [] {}, 1, 768, [] {});
    desktop.hotKeys.nextStatus = HotKeyStatus::taken;
    panel->chooseHotKey(textSelection, SettingsState::presets(textSelection).front());
    const auto byAnother = panel->hotKeyTrouble(textSelection);
    EXPECT_TRUE(byAnother);
    EXPECT_EQ(panel->hotKeyTrouble(screenOCR), std::nullopt);

    settings.updateCustomHotKey(1, 768, u"⌘ ⇧ S"_s);
    EXPECT_TRUE(panel->hotKeyTrouble(textSelection));
    EXPECT_NE(panel->hotKeyTrouble(textSelection), byAnother) << "the other hot key has it";
    settings.updateCustomHotKey(2, 768, u"⌘ ⇧ D"_s);
    EXPECT_EQ(panel->hotKeyTrouble(textSelection), std::nullopt);

    // What the desktop says later counts, too.
    desktop.hotKeys.statusHandler(ocrHotKeyID, HotKeyStatus::refused);
    EXPECT_TRUE(panel->hotKeyTrouble(screenOCR));
    desktop.hotKeys.statusHandler(ocrHotKeyID, HotKeyStatus::registered);
    EXPECT_EQ(panel->hotKeyTrouble(screenOCR), std::nullopt);
}

TEST_F(SettingsStateTest, presets_say_what_they_register_and_leave_a_recording_alone) {
    const auto symbols = [](const QString& display) {
        const QStringList parts = display.split(u' ');  // in another order than in recorded shortcuts
        return QSet<QString>(parts.begin(), parts.end());
    };
    panel->startRecording(screenOCR);
    for (const HotKeyRecordTarget target : {textSelection, screenOCR}) {
        for (const HotKeyPresetItem& preset : SettingsState::presets(target)) {
            EXPECT_EQ(symbols(preset.display), symbols(readableShortcut(preset.combination)));
            panel->chooseHotKey(target, preset);
            EXPECT_EQ(panel->display(target), preset.display);
        }
    }
    EXPECT_EQ(settings.hotKeyDisplay(), u"⌃ ⌥ D");
    EXPECT_EQ(settings.ocrHotKeyModifiers(), 6144U);
    EXPECT_EQ(panel->recordingTarget(), screenOCR);
}

TEST_F(SettingsStateTest, permissions_that_stay_as_they_are_are_not_announced) {
    const QSignalSpy announced(&permissions, &ObservableObject::objectWillChange);
    desktop.clock.advance(5s);
    EXPECT_EQ(announced.size(), 0);
    desktop.permissions.accessibility = true;
    desktop.clock.advance(5s);
    EXPECT_EQ(announced.size(), 1);
}

TEST_F(SettingsStateTest, a_connection_is_not_tested_with_a_key_that_is_not_there_yet) {
    int asked = 0;
    appState.onUnlockKey = [&] { ++asked; };
    appState.isKeyAwaited = true;
    settings.apiKey = QString();
    settings.baseURL = model.baseURL();
    panel->runTestConnection();
    EXPECT_FALSE(panel->isTesting());
    EXPECT_FALSE(panel->isSuccess());
    EXPECT_TRUE(panel->testResult());
    EXPECT_EQ(asked, 1);

    settings.selectedPresetId = u"ollama"_s;  // wants none
    panel->runTestConnection();
    EXPECT_TRUE(panel->isTesting());
    ASSERT_TRUE(eventually([&] { return !panel->isTesting(); }));
    EXPECT_TRUE(panel->isSuccess());
    EXPECT_EQ(asked, 1);
}

TEST_F(SettingsStateTest, a_connections_test_is_told_of_the_provider_that_it_was_made_of_alone) {
    panel->chooseProvider(u"openai"_s);
    settle();
    panel->restoreDefaults();
    settle();
    panel->testResult = u"told of the defaults"_s;
    undo.accept();
    settle();
    EXPECT_EQ(settings.selectedPresetId(), u"openai"_s);
    EXPECT_EQ(panel->testResult(), std::nullopt);
}

}  // namespace
}  // namespace tralio
