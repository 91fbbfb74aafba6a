#include "ui/settings/settings_state.h"

#include "hotkeys/permission_watch.h"
#include "ui/program_on_fakes.h"
#include "ui/undo/undo_offer.h"

namespace tralio {
namespace {

using enum HotKeyRecordTarget;

/// The settings panel in the hands of a test.
class SettingsStateTest : public testing::Test, protected ProgramOnFakes {
protected:
    /// Lets happen what was put off.
    void settle() {
        desktop.clock.advance(0ms);
        EXPECT_TRUE(nextTurn());
    }

    PermissionWatch permissions{hotKeys, desktop.clock};
    UndoOffer undo{desktop.clock};
    std::unique_ptr<SettingsState> panel = std::make_unique<SettingsState>(SettingsState::Dependencies{
        settings, hotKeys, ai, updates, appState, permissions, undo, desktop.clock, keyCode, [] {}});
};

TEST_F(SettingsStateTest, a_registered_hot_key_is_recorded_instead_of_running) {
    int texts = 0;
    int captures = 0;
    hotKeys.registerGlobalHotKeys(
        2, 768, [&] { ++texts; }, 1, 768, [&] { ++captures; });
    const auto isRecorded = [&](HotKeyRecordTarget target, HotKeyID pressed) {
        panel->startRecording(target);
        desktop.hotKeys.handler(pressed);
        settle();
        return panel->recordingTarget() == std::nullopt;
    };
    EXPECT_TRUE(isRecorded(textSelection, textHotKeyID));
    EXPECT_TRUE(isRecorded(screenOCR, ocrHotKeyID));
    EXPECT_FALSE(isRecorded(textSelection, ocrHotKeyID)) << "the other's combination is not taken";
    EXPECT_EQ(settings.hotKeyDisplay(), u"⌘ ⇧ D");
    EXPECT_EQ(settings.hotKeyKeyCode(), 2U);
    EXPECT_EQ(settings.ocrHotKeyDisplay(), u"⌘ ⇧ S");
    EXPECT_EQ(texts + captures, 0);

    panel.reset();
    for (const HotKeyID id : {textHotKeyID, ocrHotKeyID})
        desktop.hotKeys.handler(id);
    settle();
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
