#include "app/app_delegate.h"

#include <QRect>

#include <gmock/gmock.h>

#include "engine/in_process_http_client.h"
#include "ocr/ocr_test_support.h"
#include "ocr/screen_capture_service.h"
#include "state/app_settings.h"
#include "state/app_state.h"
#include "support/debug_log_file.h"
#include "support/fake_desktop.h"
#include "support/memory_key_value_store.h"
#include "support/print_to.h"
#include "support/stand_in_model.h"
#include "update/update_service.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr HotKeyID textKey{0x5452414C, 1};
constexpr HotKeyID ocrKey{0x5452414C, 2};

class FakePopover final : public PopoverHost {
public:
    bool isShown() const override { return shown; }
    void show(std::optional<QRect> anchor) override {
        shown = true;
        anchors.push_back(anchor);
        if (onShow)
            onShow();
    }
    void performClose() override { shown = false; }

    bool shown = false;
    std::vector<std::optional<QRect>> anchors;  ///< one for each time it was shown
    std::function<void()> onShow;
};

class FakeStatusItem final : public StatusItemHost {
public:
    void setAction(std::function<void()> installed) override { action = std::move(installed); }
    std::optional<QRect> frame() const override { return place; }

    std::function<void()> action;
    std::optional<QRect> place = QRect(1200, 3, 24, 24);
};

/// A delegate that has not been launched yet.
class Shell : public testing::Test {
protected:
    void launch() { delegate->applicationDidFinishLaunching(); }
    void select(const QString& text) {
        desktop.workspace.front = {4711, u"org.example.Editor"_s, u"Editor"_s};
        desktop.accessibility.focused = {.selectedText = text};
    }
    /// Selects in an application that answers only by copying, as its menu item does.
    void selectForCopying() {
        desktop.workspace.front = {4711, u"org.example.Editor"_s, u"Editor"_s};
        desktop.accessibility.bar = {.children = {{.children = {{.children = {{.title = u"Copy"_s}}}}}}};
    }

    DebugLogFile log;
    FakeDesktop desktop;
    MemoryKeyValueStore store;
    HotKeyService hotKeys{desktop.platform()};
    AppSettings settings{store, hotKeys};
    AppState appState;
    FakePopover popover;
    FakeStatusItem statusItem;
    ScriptedRecognizer recognizer;
    OCRService ocr{recognizer};
    DrawnRegion tool;
    ScreenCaptureService captures{ocr, tool, desktop.clock};
    StandInModel updateServer;
    InProcessHttpClient http{desktop.clock};
    UpdateService updates{http, {QUrl(updateServer.baseURL()), u"1.0.9"_s, {}, {}, {}}};
    std::unique_ptr<AppDelegate> delegate = delegateWith(popover);

    std::unique_ptr<AppDelegate> delegateWith(PopoverHost& host) {
        return std::make_unique<AppDelegate>(AppDelegate::Services{appState, settings, hotKeys,
                                                                   desktop.pasteboard, captures, updates,
                                                                   desktop.clock, host, statusItem});
    }
};

TEST_F(Shell, launching_registers_the_hot_keys_of_the_settings_and_shows_nothing) {
    settings.hotKeyKeyCode = 17;
    settings.hotKeyModifiers = 2048;
    settings.ocrHotKeyKeyCode = 49;
    settings.ocrHotKeyModifiers = 4096;
    launch();
    const auto registrations = desktop.hotKeys.registrations();
    ASSERT_THAT(registrations, SizeIs(2));
    EXPECT_EQ(registrations[0], (FakeHotKeyPlatform::Request{17, 2048, textKey}));
    EXPECT_EQ(registrations[1].keyCode, 49U);
    EXPECT_EQ(registrations[1].modifiers, 4096U);
    desktop.clock.advance(10s);
    EXPECT_THAT(popover.anchors, IsEmpty());
}

TEST_F(Shell, two_seconds_after_the_launch_a_new_version_is_looked_for_in_silence) {
    launch();
    EXPECT_EQ(AppDelegate::shared(), delegate.get());
    desktop.clock.advance(1999ms);
    EXPECT_FALSE(updates.isChecking());
    desktop.clock.advance(1ms);
    EXPECT_TRUE(updates.isChecking());
    EXPECT_EQ(updates.statusMessage(), std::nullopt);
}

TEST_F(Shell, a_click_on_the_tray_item_opens_the_popover_there_and_the_next_one_closes_it) {
    launch();
    const QUuid initial = appState.openPopoverSignal();
    statusItem.action();
    EXPECT_TRUE(popover.shown);
    const QUuid opened = appState.openPopoverSignal();
    EXPECT_NE(opened, initial);

    statusItem.action();
    EXPECT_FALSE(popover.shown);
    EXPECT_EQ(appState.openPopoverSignal(), opened) << "closing announced an opening";

    const auto first = std::exchange(statusItem.place, std::nullopt);
    statusItem.action();
    EXPECT_TRUE(popover.shown);
    EXPECT_NE(appState.openPopoverSignal(), opened);
    EXPECT_EQ(popover.anchors, (std::vector<std::optional<QRect>>{first, std::nullopt}));
}

TEST_F(Shell, the_text_hot_key_fetches_shows_on_a_later_turn_and_requests_eighty_milliseconds_after_that) {
    launch();
    select(u"một hai ba bốn năm sáu bảy tám chín mười"_s);
    const QUuid initial = appState.openPopoverSignal();
    popover.onShow = [&] {
        EXPECT_NE(appState.openPopoverSignal(), initial) << "shown before it was announced";
        EXPECT_EQ(appState.pendingTextToTranslate(), QString());
    };

    delegate->handleGlobalHotKey();
    EXPECT_THAT(log.messages(), Contains(u"handleGlobalHotKey: triggered"_s));
    EXPECT_EQ(log.messages().last(),
              u"handleGlobalHotKey: fetchSelectedText finished with text='một hai ba bốn năm sáu bảy tám'"_s);
    EXPECT_FALSE(popover.shown) << "shown in the turn of the fetch";
    EXPECT_EQ(appState.lastHandledChangeCount, -1);

    desktop.clock.advance(0ms);
    EXPECT_TRUE(popover.shown);
    EXPECT_EQ(appState.lastHandledChangeCount, desktop.pasteboard.count);
    desktop.clock.advance(79ms);
    EXPECT_EQ(appState.translateTriggerId(), std::nullopt);
    desktop.clock.advance(1ms);
    EXPECT_EQ(appState.pendingTextToTranslate(), u"một hai ba bốn năm sáu bảy tám chín mười"_s);
    EXPECT_NE(appState.translateTriggerId(), std::nullopt);
    EXPECT_THAT(popover.anchors, ElementsAre(statusItem.place));
}

TEST_F(Shell, a_press_shows_a_popover_that_is_already_open_once_more) {
    launch();
    statusItem.action();
    const QUuid opened = appState.openPopoverSignal();
    select(u"text"_s);
    desktop.hotKeys.handler(textKey);
    desktop.clock.advance(80ms);
    EXPECT_TRUE(popover.shown);
    EXPECT_THAT(popover.anchors, SizeIs(2));
    EXPECT_NE(appState.openPopoverSignal(), opened);
    EXPECT_EQ(appState.pendingTextToTranslate(), u"text"_s);
}

TEST_F(Shell, a_text_that_came_over_the_clipboard_counts_as_handled_but_a_later_copy_does_not) {
    launch();
    selectForCopying();
    desktop.hotKeys.handler(textKey);
    desktop.clock.advance(0ms);
    EXPECT_THAT(popover.anchors, IsEmpty()) << "shown before the text was there";
    desktop.pasteboard.copy(u"copied"_s);
    desktop.clock.advance(30ms);
    EXPECT_TRUE(popover.shown);
    EXPECT_EQ(appState.lastHandledChangeCount, 8);

    desktop.pasteboard.copy(u"the user's own"_s);
    desktop.clock.advance(80ms);
    EXPECT_EQ(appState.pendingTextToTranslate(), u"copied"_s);
    EXPECT_EQ(appState.lastHandledChangeCount, 8);
}

TEST_F(Shell, nothing_selected_opens_the_popover_and_requests_nothing) {
    launch();
    desktop.hotKeys.handler(textKey);
    desktop.clock.advance(0ms);
    EXPECT_EQ(log.messages().last(), u"handleGlobalHotKey: fetchSelectedText finished with text='nil'"_s);
    EXPECT_TRUE(popover.shown);
    desktop.clock.advance(1s);
    EXPECT_EQ(appState.translateTriggerId(), std::nullopt);
    EXPECT_EQ(appState.lastHandledChangeCount, -1);
    EXPECT_TRUE(log.messages().filter(u"AppState."_s).isEmpty()) << "a request was made and dropped";
}

TEST_F(Shell, panels_hide_and_show_the_popover_through_the_hooks) {
    appState.showPopover();
    EXPECT_FALSE(popover.shown);
    launch();
    const QUuid initial = appState.openPopoverSignal();
    appState.showPopover();
    EXPECT_THAT(popover.anchors, ElementsAre(statusItem.place));
    EXPECT_NE(appState.openPopoverSignal(), initial);
    appState.hidePopover();
    EXPECT_FALSE(popover.shown);
}

TEST_F(Shell, whatever_comes_after_the_delegate_is_gone_does_nothing) {
    launch();
    delegate.reset();
    appState.showPopover();
    appState.hidePopover();
    statusItem.action();
    select(u"text"_s);
    desktop.hotKeys.handler(textKey);
    desktop.clock.advance(1s);
    EXPECT_THAT(popover.anchors, IsEmpty());
    EXPECT_EQ(appState.translateTriggerId(), std::nullopt);
}

TEST_F(Shell, a_delegate_that_goes_while_a_text_is_on_its_way_takes_the_rest_along) {
    struct Case {
        const char* moment;
        std::chrono::milliseconds lifetime;
        size_t shown;
    };
    for (const Case& given : {Case{"during the fetch", 10ms, 0}, Case{"before the request", 100ms, 1}}) {
        FakePopover host;
        auto shell = delegateWith(host);
        selectForCopying();
        shell->handleGlobalHotKey();
        desktop.pasteboard.copy(u"copied"_s);
        desktop.clock.advance(given.lifetime);
        shell.reset();
        desktop.clock.advance(1s);
        EXPECT_THAT(host.anchors, SizeIs(given.shown)) << given.moment;
        EXPECT_EQ(appState.translateTriggerId(), std::nullopt) << given.moment;
    }

    select(u"text"_s);
    delegate->handleGlobalHotKey();
    delegate.reset();
    desktop.clock.advance(1s);
    EXPECT_THAT(popover.anchors, IsEmpty()) << "between the fetch and the next turn";
}

TEST_F(Shell, a_text_from_another_program_is_requested_trimmed_and_leaves_the_clipboard_alone) {
    launch();
    delegate->translateSelectedText(u" \n\t"_s);
    delegate->translateSelectedText(u"  from a menu\n"_s);
    EXPECT_FALSE(popover.shown);
    desktop.clock.advance(0ms);
    EXPECT_THAT(popover.anchors, SizeIs(1));
    desktop.clock.advance(79ms);
    EXPECT_EQ(appState.translateTriggerId(), std::nullopt);
    desktop.clock.advance(1ms);
    EXPECT_EQ(appState.pendingTextToTranslate(), u"from a menu"_s);
    EXPECT_EQ(appState.lastHandledChangeCount, -1);
}

class ClipboardCheck : public Shell {
protected:
    /// Opens the popover by the tray item; what is requested then, if anything.
    std::optional<QString> opening() {
        popover.shown = false;
        appState.pendingTextToTranslate = QString();
        appState.translateTriggerId = std::nullopt;
        statusItem.action();
        desktop.clock.advance(79ms);
        EXPECT_EQ(appState.translateTriggerId(), std::nullopt);
        desktop.clock.advance(1ms);
        return appState.translateTriggerId() ? std::optional(appState.pendingTextToTranslate())
                                             : std::nullopt;
    }
};

TEST_F(ClipboardCheck, each_new_text_is_translated_once_when_the_tray_item_opens_the_popover) {
    launch();
    desktop.pasteboard.copy(u" new text\n"_s);
    EXPECT_EQ(opening(), u"new text"_s);
    EXPECT_EQ(opening(), std::nullopt);
    desktop.pasteboard.copy(u" new text\n"_s);
    EXPECT_EQ(opening(), u"new text"_s) << "the same text, copied again, is new";

    statusItem.action();
    desktop.pasteboard.copy(u"copied before closing"_s);
    statusItem.action();
    EXPECT_EQ(appState.lastHandledChangeCount, desktop.pasteboard.count - 1) << "closing checked";
}

TEST_F(ClipboardCheck, what_is_no_text_is_not_counted_as_handled) {
    launch();
    for (const std::optional<QString>& content : {std::optional(u" \n"_s), std::optional<QString>()}) {
        desktop.pasteboard.copy(content);
        EXPECT_EQ(opening(), std::nullopt);
        EXPECT_EQ(appState.lastHandledChangeCount, -1);
    }
}

TEST_F(ClipboardCheck, a_password_is_never_sent_on_its_own) {
    launch();
    desktop.pasteboard.copy(u"correct horse"_s);
    desktop.pasteboard.concealed = true;
    EXPECT_EQ(opening(), std::nullopt);
}

TEST_F(ClipboardCheck, the_user_can_do_without_it) {
    settings.autoPaste = false;
    launch();
    desktop.pasteboard.copy(u"new text"_s);
    EXPECT_EQ(opening(), std::nullopt);
}

TEST_F(ClipboardCheck, what_a_hot_key_fetched_over_the_clipboard_is_not_new) {
    launch();
    selectForCopying();
    desktop.hotKeys.handler(textKey);
    desktop.clock.advance(0ms);
    desktop.pasteboard.copy(u"copied"_s);
    desktop.clock.advance(200ms);
    EXPECT_EQ(opening(), std::nullopt);
}

class ScreenOCR : public Shell {
protected:
    /// Presses the hot key with the popover open and waits until the capture has ended.
    void capture() {
        launch();
        popover.shown = true;
        tool.onRun = [this] { shownWhileDrawing = popover.shown; };
        desktop.hotKeys.handler(ocrKey);
        desktop.clock.advance(0ms);
        EXPECT_FALSE(popover.shown);
        desktop.clock.advance(150ms);
        EXPECT_TRUE(eventually([this] { return popover.shown; }));
    }

    std::optional<bool> shownWhileDrawing;
};

TEST_F(ScreenOCR, the_popover_is_away_while_the_user_draws_and_the_text_is_requested) {
    recognizer.reads({{.boundingBox = {0.1, 0.5, 0.5, 0.1}, .candidates = {u"  chữ trên màn hình \n"_s}}});
    capture();
    EXPECT_EQ(shownWhileDrawing, false);
    EXPECT_TRUE(eventually([this] { return appState.pendingTextToTranslate() == u"chữ trên màn hình"; }));
    EXPECT_TRUE(log.messages().contains(u"handleScreenOCRHotKey: triggered"_s));
}

TEST_F(ScreenOCR, a_cancelled_capture_requests_nothing_and_brings_the_popover_back) {
    tool.draws = false;
    capture();
    EXPECT_TRUE(nextTurn());
    EXPECT_EQ(appState.translateTriggerId(), std::nullopt);
    EXPECT_THAT(log.messages().filter(u"error"_s), IsEmpty());
}

TEST_F(ScreenOCR, a_failed_recognition_is_logged_and_brings_the_popover_back) {
    capture();  // nothing is read in the picture
    EXPECT_TRUE(eventually([this] { return popover.anchors.size() == 2; }));
    EXPECT_THAT(log.messages(),
                Contains(u"handleScreenOCRHotKey error: "_s + OCRError::noTextFound().errorDescription()));
    EXPECT_EQ(appState.translateTriggerId(), std::nullopt);
}

}  // namespace
}  // namespace tralio
