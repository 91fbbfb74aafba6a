#include "app/app_delegate.h"

#include <QRect>

#include <gmock/gmock.h>

#include "common/on_change.h"
#include "support/debug_log_file.h"
#include "ui/program_on_fakes.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

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
    void setMenu(const QList<StatusMenuEntry>& entries) override { menu = entries; }
    bool isInTray() const override { return inTray; }
    std::optional<QRect> frame() const override { return place; }

    void choose(const QString& title) {
        for (const StatusMenuEntry& entry : menu)
            if (entry.title == title)
                entry.action();
    }

    bool inTray = true;
    std::function<void()> action;
    QList<StatusMenuEntry> menu;
    std::optional<QRect> place = QRect(1200, 3, 24, 24);
};

/// A delegate that has not been launched yet.
class Shell : public testing::Test, protected ProgramOnFakes {
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

    std::unique_ptr<AppDelegate> delegateWith(PopoverHost& host, bool isFirstStart = false) {
        return std::make_unique<AppDelegate>(
            AppDelegate::Dependencies{appState, settings, hotKeys, desktop.pasteboard, captures, updates,
                desktop.clock, host, statusItem, {}, isFirstStart, {}, [this] { ++quits; }});
    }

    DebugLogFile log;
    FakePopover popover;
    FakeStatusItem statusItem;
    int quits = 0;
    std::unique_ptr<AppDelegate> delegate = delegateWith(popover);
};

TEST_F(Shell, the_items_menu_does_what_it_says_once_it_has_left_the_screen) {
    launch();
    select(u"in front"_s);
    statusItem.choose(u"Dịch phần đang chọn"_s);
    EXPECT_FALSE(popover.shown) << "the menu may still have the keyboard";
    desktop.clock.advance(1s);
    EXPECT_EQ(appState.pendingTextToTranslate(), u"in front"_s);
    popover.shown = false;
    statusItem.choose(u"Mở Tralio"_s);
    desktop.clock.advance(1s);
    EXPECT_TRUE(popover.shown);
    statusItem.choose(u"Chụp màn hình"_s);
    desktop.clock.advance(1s);
    EXPECT_FALSE(popover.shown);
    statusItem.choose(u"Thoát"_s);
    EXPECT_EQ(quits, 1);
}

TEST_F(Shell, launching_registers_the_hot_keys_and_looks_for_a_new_version_in_silence_two_seconds_later) {
    settings.hotKeyKeyCode = 17;
    settings.hotKeyModifiers = 2048;
    settings.ocrHotKeyKeyCode = 49;
    settings.ocrHotKeyModifiers = 4096;
    launch();
    EXPECT_EQ(AppDelegate::shared(), delegate.get());
    EXPECT_THAT(desktop.hotKeys.registrations(),
        ElementsAre(FakeHotKeyPlatform::Request{{KeyCode::t, Modifier::option}, textHotKeyID},
            FakeHotKeyPlatform::Request{{KeyCode::space, Modifier::control}, ocrHotKeyID}));
    desktop.clock.advance(1999ms);
    EXPECT_FALSE(updates.isChecking());
    desktop.clock.advance(1ms);
    EXPECT_TRUE(updates.isChecking());
    EXPECT_EQ(updates.statusMessage(), std::nullopt);
    EXPECT_THAT(popover.anchors, IsEmpty());
}

TEST_F(Shell, only_a_first_start_without_a_tray_opens_the_popover_by_itself) {
    const std::tuple<bool, bool, size_t> cases[] = {
        {true, false, 1U}, {true, true, 0U}, {false, false, 0U}, {false, true, 0U}};
    for (const auto& [isFirstStart, inTray, shown] : cases) {
        FakePopover host;
        statusItem.inTray = inTray;
        delegate = delegateWith(host, isFirstStart);
        launch();
        desktop.clock.advance(10s);
        EXPECT_THAT(host.anchors, SizeIs(shown)) << isFirstStart << inTray;
        host.performClose();
        desktop.clock.advance(1h);
        EXPECT_THAT(host.anchors, SizeIs(shown)) << "more than once";
        delegate.reset();
    }
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
    EXPECT_EQ(popover.anchors, (std::vector<std::optional<QRect>>{first, std::nullopt}));
}

TEST_F(Shell, the_panels_hide_and_show_the_popover) {
    launch();
    appState.showPopover();
    EXPECT_TRUE(popover.shown);
    EXPECT_EQ(popover.anchors.back(), statusItem.place);
    appState.hidePopover();
    EXPECT_FALSE(popover.shown);
}

TEST_F(Shell, the_text_hot_key_fetches_shows_on_a_later_turn_and_requests_eighty_milliseconds_after_that) {
    launch();
    const QString text = u"một hai ba bốn năm sáu bảy tám chín mười"_s;
    select(text);
    popover.onShow = [&, before = appState.openPopoverSignal()] {
        EXPECT_NE(appState.openPopoverSignal(), before) << "shown before it was announced";
        EXPECT_EQ(appState.pendingTextToTranslate(), QString());
    };
    delegate->handleGlobalHotKey();
    EXPECT_THAT(log.messages(), Contains(u"handleGlobalHotKey: triggered"_s));
    EXPECT_EQ(log.messages().last(),
        u"handleGlobalHotKey: fetchSelectedText finished with text='một hai ba bốn năm sáu bảy tám'"_s);
    EXPECT_FALSE(popover.shown) << "shown in the turn of the fetch";
    desktop.clock.advance(0ms);
    EXPECT_TRUE(popover.shown);
    desktop.clock.advance(79ms);
    EXPECT_EQ(appState.translateTriggerId(), std::nullopt);
    desktop.clock.advance(1ms);
    EXPECT_EQ(appState.pendingTextToTranslate(), text);
    EXPECT_NE(appState.translateTriggerId(), std::nullopt);

    popover.onShow = nullptr;
    delegate->handleGlobalHotKey();
    desktop.clock.advance(0ms);
    EXPECT_THAT(popover.anchors, ElementsAre(statusItem.place, statusItem.place)) << "it may be open already";
    EXPECT_TRUE(popover.shown);
}

TEST_F(Shell, nothing_selected_opens_the_popover_and_requests_nothing) {
    launch();
    desktop.hotKeys.handler(textHotKeyID);
    desktop.clock.advance(1s);
    EXPECT_TRUE(popover.shown);
    EXPECT_EQ(log.messages().last(), u"handleGlobalHotKey: fetchSelectedText finished with text='nil'"_s);
    EXPECT_EQ(appState.notice(), u"Không có chữ nào đang được chọn"_s);
    desktop.clock.advance(2s);
    EXPECT_EQ(appState.notice(), QString());
    EXPECT_EQ(appState.translateTriggerId(), std::nullopt);
    EXPECT_EQ(appState.lastHandledChangeCount, -1);
}

TEST_F(Shell, nothing_happens_after_the_delegate_is_gone_also_while_a_text_is_on_its_way) {
    selectForCopying();
    for (const auto& [lifetime, shown] : {std::pair(10ms, 0U), std::pair(100ms, 1U)}) {
        FakePopover host;
        auto shell = delegateWith(host);
        shell->handleGlobalHotKey();
        desktop.pasteboard.copy(u"copied"_s);
        desktop.clock.advance(lifetime);
        shell.reset();
        desktop.clock.advance(1s);
        EXPECT_THAT(host.anchors, SizeIs(shown)) << "gone after " << lifetime.count() << " ms";
        EXPECT_EQ(appState.translateTriggerId(), std::nullopt) << "gone after " << lifetime.count() << " ms";
    }

    launch();
    select(u"text"_s);
    delegate->handleGlobalHotKey();
    delegate.reset();  // between the fetch and the next turn
    appState.showPopover();
    appState.hidePopover();
    statusItem.action();
    desktop.hotKeys.handler(textHotKeyID);
    desktop.clock.advance(1s);
    EXPECT_THAT(popover.anchors, IsEmpty());
    EXPECT_EQ(appState.translateTriggerId(), std::nullopt);
}

TEST_F(Shell, a_text_from_another_program_is_requested_trimmed_and_leaves_the_clipboard_alone) {
    delegate->translateSelectedText(u" \n\t"_s);
    delegate->translateSelectedText(u"  from a menu\n"_s);
    desktop.clock.advance(79ms);
    EXPECT_THAT(popover.anchors, SizeIs(1));
    EXPECT_EQ(appState.translateTriggerId(), std::nullopt);
    desktop.clock.advance(1ms);
    EXPECT_EQ(appState.pendingTextToTranslate(), u"from a menu"_s);
    EXPECT_EQ(appState.lastHandledChangeCount, -1);
}

TEST_F(Shell, of_texts_that_come_in_a_flood_the_newest_is_requested_every_three_hundred_milliseconds) {
    QStringList requested;
    onChange(
        appState, &appState, [this] { return appState.translateTriggerId(); },
        [&] { requested += appState.pendingTextToTranslate(); });
    const auto pass = [&](std::chrono::milliseconds time) {
        desktop.clock.advance(time);
        EXPECT_TRUE(nextTurn());
    };
    for (int i = 0; i < 1000; ++i) {
        delegate->translateSelectedText(QString::number(i));
        pass(1ms);
    }
    pass(1s);
    EXPECT_THAT(requested, ElementsAre(u"79"_s, u"379"_s, u"679"_s, u"979"_s, u"999"_s));
    pass(1s);
    EXPECT_THAT(requested, SizeIs(5));
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
    desktop.pasteboard.copy(u"new text"_s);
    EXPECT_EQ(opening(), std::nullopt) << "a clipboard manager has taken it over";

    desktop.pasteboard.copy(u"copied before closing"_s);
    statusItem.action();
    EXPECT_FALSE(popover.shown);
    desktop.clock.advance(80ms);
    EXPECT_EQ(appState.lastHandledChangeCount, desktop.pasteboard.count - 1) << "closing checked";
}

TEST_F(ClipboardCheck, a_copy_made_while_the_one_before_is_read_is_new_the_next_time) {
    launch();
    desktop.pasteboard.copy(u"first"_s);
    desktop.pasteboard.onRead = [this] {
        desktop.pasteboard.onRead = nullptr;
        desktop.pasteboard.copy(u"second"_s);
    };
    EXPECT_EQ(opening(), u"first"_s);
    EXPECT_EQ(opening(), u"second"_s);
}

TEST_F(ClipboardCheck, a_result_copied_here_is_not_new_whoever_has_taken_it_over) {
    launch();
    desktop.pasteboard.setString(u"the result\n"_s);
    EXPECT_EQ(opening(), std::nullopt);
    desktop.pasteboard.copy(u"the result"_s);
    EXPECT_EQ(opening(), std::nullopt);
    desktop.pasteboard.copy(u"another text"_s);
    EXPECT_EQ(opening(), u"another text"_s);
}

TEST_F(ClipboardCheck, what_is_no_text_or_a_password_or_not_wanted_is_not_sent) {
    launch();
    for (const std::optional<QString>& content : {std::optional(u" \n"_s), std::optional<QString>()}) {
        desktop.pasteboard.copy(content);
        EXPECT_EQ(opening(), std::nullopt);
    }
    desktop.pasteboard.copy(u"correct horse"_s);
    desktop.pasteboard.concealed = true;
    EXPECT_EQ(opening(), std::nullopt);
    desktop.pasteboard.concealed = false;
    settings.autoPaste = false;
    EXPECT_EQ(opening(), std::nullopt);
    settings.autoPaste = true;
    EXPECT_EQ(opening(), u"correct horse"_s);
}

TEST_F(ClipboardCheck, what_a_hot_key_fetched_over_the_clipboard_is_not_new_but_a_later_copy_is) {
    launch();
    selectForCopying();
    const auto fetch = [this] {
        desktop.hotKeys.handler(textHotKeyID);
        desktop.clock.advance(0ms);
        EXPECT_FALSE(popover.shown) << "shown before the text was there";
        desktop.pasteboard.copy(u"copied"_s);
        desktop.clock.advance(30ms);
        EXPECT_TRUE(popover.shown);
    };
    fetch();
    desktop.clock.advance(80ms);
    EXPECT_EQ(appState.pendingTextToTranslate(), u"copied"_s);
    EXPECT_EQ(opening(), std::nullopt);
    desktop.pasteboard.copy(u"copied"_s);
    EXPECT_EQ(opening(), std::nullopt) << "taken over by another program";

    popover.shown = false;
    fetch();
    desktop.pasteboard.copy(u"the user's own"_s);
    desktop.clock.advance(80ms);
    EXPECT_EQ(appState.pendingTextToTranslate(), u"copied"_s);
    EXPECT_EQ(opening(), u"the user's own"_s);
}

TEST_F(Shell, the_popover_is_away_while_the_user_draws_and_only_a_text_is_requested) {
    launch();
    region.onRun = [this] { EXPECT_FALSE(popover.shown) << "in the picture"; };
    const auto capture = [this] {
        popover.shown = true;
        desktop.hotKeys.handler(ocrHotKeyID);
        desktop.clock.advance(0ms);
        desktop.clock.advance(150ms);
        EXPECT_TRUE(eventually([this] { return popover.shown; }));
    };
    region.draws = false;
    capture();
    EXPECT_TRUE(nextTurn());
    EXPECT_EQ(log.messages().last(), u"handleScreenOCRHotKey: triggered"_s) << "a cancel is no error";
    EXPECT_EQ(appState.notice(), QString());
    EXPECT_FALSE(appState.isReadingCapture());

    region.draws = true;
    popover.onShow = [this, times = 0]() mutable {
        if (++times == 1)
            popover.performClose();  // the user, while the picture is read
    };
    capture();  // nothing is read in the picture
    popover.onShow = nullptr;
    const QString failure = u"handleScreenOCRHotKey error: "_s + OCRError::noTextFound().errorDescription();
    EXPECT_TRUE(eventually([&] { return log.messages().contains(failure); }));
    EXPECT_EQ(appState.notice(), u"Không tìm thấy chữ trong vùng đã chụp"_s);
    desktop.clock.advance(2s);
    EXPECT_EQ(appState.notice(), QString());
    EXPECT_EQ(appState.translateTriggerId(), std::nullopt);

    recognizer.reads({{.boundingBox = {0.1, 0.5, 0.5, 0.1}, .candidates = {u"  chữ trên màn hình \n"_s}}});
    bool wasTold = false;
    recognizer.onRecognize = [&] { wasTold = appState.isReadingCapture(); };
    capture();
    EXPECT_TRUE(eventually([this] { return appState.pendingTextToTranslate() == u"chữ trên màn hình"; }));
    EXPECT_TRUE(wasTold);
    EXPECT_FALSE(appState.isReadingCapture());
}

}  // namespace
}  // namespace tralio
