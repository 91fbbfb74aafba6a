#include <QKeyEvent>
#include <QSignalSpy>
#include <QWidget>

#include "hotkeys/permission_watch.h"
#include "ui/kit/button.h"
#include "ui/kit/keyboard_use.h"
#include "ui/program_on_fakes.h"
#include "ui/settings/key_down_monitor.h"
#include "ui/settings/settings_state.h"
#include "ui/undo/undo_offer.h"

namespace tralio {
namespace {

using enum HotKeyRecordTarget;

/// The settings panel in the hands of a test.
struct SettingsStateTest : testing::Test, protected ProgramOnFakes {
    /// Lets happen what was put off.
    void settle() {
        desktop.clock.advance(0ms);
        EXPECT_TRUE(nextTurn());
    }

    [[nodiscard]] std::unique_ptr<SettingsState> opened() {
        return std::make_unique<SettingsState>(SettingsState::Dependencies{settings, hotKeys, ai, updates,
            appState, desktop.pasteboard, permissions, undo, desktop.clock, keyCode, true, [] {}});
    }

    PermissionWatch permissions{hotKeys, desktop.clock};
    UndoOffer undo{desktop.clock};
    std::unique_ptr<SettingsState> panel = opened();
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
    EXPECT_EQ(settings.ocrHotKeyModifiers(), 6144U);
    EXPECT_EQ(panel->recordingTarget(), screenOCR);
}

TEST_F(SettingsStateTest, a_connections_test_waits_for_the_key_and_is_told_of_its_own_provider_alone) {
    int asked = 0;
    appState.onUnlockKey = [&] { ++asked; };
    appState.isKeyAwaited = true;
    panel->chooseProvider(u"openai"_s);
    panel->runTestConnection();
    EXPECT_FALSE(panel->isTesting() || panel->isSuccess());
    EXPECT_TRUE(panel->testResult());
    EXPECT_EQ(asked, 1);

    panel->restoreDefaults();
    settle();
    panel->testResult = u"told of the defaults"_s;
    undo.accept();
    settle();
    EXPECT_EQ(settings.selectedPresetId(), u"openai"_s);
    EXPECT_EQ(panel->testResult(), std::nullopt);
    panel->testResult = u"told of this address"_s;
    settings.baseURL = u"http://another/v1"_s;
    settle();
    EXPECT_EQ(panel->testResult(), std::nullopt);
}

TEST_F(SettingsStateTest, a_provider_that_takes_the_place_of_what_only_the_user_knows_can_be_undone) {
    const auto choose = [&](const QString& provider) {
        panel->chooseProvider(provider);
        settle();
    };
    choose(u"openai"_s);
    choose(u"custom"_s);
    choose(u"kavo"_s);
    EXPECT_FALSE(undo.message()) << "each brings what the last one brought";

    struct Own {
        Persisted<QString>& setting;
        QString value;
        QString provider;
    };
    for (const Own& own :
        {Own{settings.apiKey, u"sk-own"_s, u"kavo"_s}, Own{settings.baseURL, u"http://own/v1"_s, u"openai"_s},
            Own{settings.model, u"own-model"_s, u"custom"_s}}) {
        choose(u"openai"_s);
        desktop.clock.advance(7s);
        own.setting = own.value;
        settle();
        choose(own.provider);
        desktop.clock.advance(5s);
        panel = opened();
        choose(u"kavo"_s);
        desktop.clock.advance(5s);
        EXPECT_NE(own.setting(), own.value);
        settings.customPrompt = own.value;
        ASSERT_TRUE(undo.message()) << qPrintable(own.value);
        undo.accept();
        EXPECT_EQ(own.setting(), own.value);
        EXPECT_NE(settings.selectedPresetId(), u"kavo"_s);
        EXPECT_EQ(settings.customPrompt(), own.value) << "which was set since";
    }
}

constexpr quint32 escapePosition = 9;
constexpr quint32 otherPosition = 38;

/// Sends a key as the toolkit does: the window has the server's time, the widget a copy without.
void sendKey(QWidget& widget, const QKeyEvent& event, quint64 time) {
    QWidget window;
    const std::unique_ptr<QKeyEvent> timed(event.clone());
    const std::unique_ptr<QKeyEvent> copy(event.clone());
    timed->setTimestamp(time);
    if (event.type() == QEvent::KeyPress) {
        QKeyEvent override(QEvent::ShortcutOverride, event.key(), event.modifiers(), event.nativeScanCode(),
            0, 0, {}, event.isAutoRepeat());
        override.setTimestamp(time);
        QCoreApplication::sendEvent(&window, &override);
    }
    QCoreApplication::sendEvent(&window, timed.get());
    if (!timed->isAccepted())
        QCoreApplication::sendEvent(&widget, copy.get());
}

/// Counts the keys that reach it.
class Target final : public QWidget {
public:
    void send(QEvent::Type type, quint64 time, quint32 position = escapePosition, bool repeats = false) {
        const int key = position == escapePosition ? Qt::Key_Escape : Qt::Key_A;
        sendKey(*this, QKeyEvent(type, key, Qt::NoModifier, position, 0, 0, {}, repeats), time);
    }

    int presses = 0;

protected:
    void keyPressEvent(QKeyEvent* /*event*/) override { ++presses; }
};

/// As the bridge to screen readers, which keeps keys back until a listener has seen them: the copy alone
/// arrives.
class Bridge final : public QObject {
public:
    Bridge() { QCoreApplication::instance()->installEventFilter(this); }

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
        if (!isKey || static_cast<const QKeyEvent&>(*event).timestamp() == 0)
            return false;
        event->ignore();
        return true;
    }
};

TEST(KeyDownMonitorTest, what_a_swallowed_key_repeats_reaches_nobody_until_it_is_pressed_anew) {
    using enum QEvent::Type;
    watchKeyboardUse();
    const Bridge bridge;
    Target target;
    QTest::mouseClick(&target, Qt::LeftButton);  // begins the recording
    const auto swallow = [] {
        return std::make_unique<KeyDownMonitor>(
            [](quint32) { return KeyCode::escape; }, [](const KeyCombination&) { return true; });
    };
    auto monitor = swallow();
    target.send(KeyPress, 100);
    target.send(KeyRelease, 300);
    monitor.reset();
    target.send(KeyPress, 300);  // a repeat that the toolkit takes for a hand's press
    target.send(KeyPress, 320, otherPosition);
    EXPECT_EQ(target.presses, 1) << "another key is another key";
    for (quint64 time = 350; time < 500; time += 50) {
        target.send(KeyRelease, time);
        target.send(KeyPress, time, escapePosition, time == 400);
    }
    EXPECT_EQ(target.presses, 1);
    target.send(KeyRelease, 500);
    target.send(KeyPress, 700);
    EXPECT_EQ(target.presses, 2) << "pressed anew";
    target.send(KeyRelease, 800);
    target.send(KeyPress, 800);
    EXPECT_EQ(target.presses, 3) << "it swallows no more";

    monitor = swallow();
    target.send(KeyPress, 900);
    target.send(KeyRelease, 1000);
    monitor.reset();
    target.send(KeyPress, 1200);
    EXPECT_EQ(target.presses, 4) << "released before the end";
}

TEST(KeyDownMonitorTest, a_control_is_pressed_once_by_a_key_that_is_held_whoever_listens) {
    using enum QEvent::Type;
    for (const int key : {Qt::Key_Return, Qt::Key_Space}) {
        Button button(button::bordered, {.title = QStringLiteral("x")});
        const Bridge bridge;
        const QSignalSpy clicks(&button, &Button::clicked);
        const auto send = [&](QEvent::Type type, quint64 time) {
            sendKey(button, QKeyEvent(type, key, Qt::NoModifier, otherPosition, 0, 0), time);
        };
        send(KeyPress, 1000);
        for (const quint64 time : {1300, 1350, 1400}) {
            send(KeyRelease, time);
            send(KeyPress, time);
        }
        send(KeyRelease, 1500);
        EXPECT_EQ(clicks.count(), 1);
        send(KeyPress, 1600);
        send(KeyRelease, 1700);
        EXPECT_EQ(clicks.count(), 2);
    }
}

}  // namespace
}  // namespace tralio
