#include "app/app_delegate.h"

#include <QCoreApplication>

#include "app/shell_fixture.h"
#include "common/on_change.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

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

TEST_F(Shell, the_panels_open_and_close_the_popover_from_the_launch_on) {
    appState.showPopover();
    EXPECT_FALSE(popover.shown);
    launch();
    const QUuid before = appState.openPopoverSignal();
    appState.showPopover();
    EXPECT_TRUE(popover.shown);
    EXPECT_NE(appState.openPopoverSignal(), before);
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

TEST_F(Shell, the_text_hot_key_pressed_twice_asks_for_one_text_and_says_nothing_over_its_result) {
    launch();
    selectForCopying();
    int requests = 0;
    onChange(
        appState, &appState, [this] { return appState.translateTriggerId(); }, [&] { ++requests; });
    const auto press = [this] {
        desktop.hotKeys.handler(textHotKeyID);
        desktop.clock.advance(0ms);
    };
    press();
    desktop.clock.advance(20ms);
    press();
    desktop.pasteboard.copy(u"copied"_s);
    desktop.clock.advance(10ms);  // the popover is on its way to the front
    press();
    desktop.clock.advance(1s);
    EXPECT_TRUE(nextTurn());
    EXPECT_EQ(requests, 1);
    EXPECT_THAT(desktop.accessibility.pressed, SizeIs(1));

    desktop.workspace.front = {static_cast<qint32>(QCoreApplication::applicationPid()), {}, {}};
    press();
    desktop.clock.advance(1s);
    EXPECT_EQ(appState.notice(), QString());
    EXPECT_TRUE(nextTurn());
    EXPECT_EQ(requests, 1);

    selectForCopying();
    press();
    desktop.pasteboard.copy(u"another"_s);
    desktop.clock.advance(1s);
    EXPECT_EQ(appState.pendingTextToTranslate(), u"another"_s) << "it is dead for good";
}

TEST_F(Shell, a_selection_that_shows_late_is_requested_if_it_is_recent_and_offered_if_nobody_knows) {
    std::function<void(const LateSelection&)> deliver;
    readLate = [&](auto take) { deliver = std::move(take); };
    delegate = delegateWith(popover);
    launch();
    desktop.workspace.front = {4711, std::nullopt, std::nullopt};
    desktop.keyEvents.isGranted = false;
    const auto press = [&] {
        deliver = {};
        appState.notice = QString();
        appState.pendingTextToTranslate = QString();
        desktop.hotKeys.handler(textHotKeyID);
        desktop.clock.advance(1s);
        return deliver != nullptr;
    };
    ASSERT_TRUE(press());
    deliver({u"maybe old"_s, LateSelection::Age::unknown});
    EXPECT_EQ(appState.pendingTextToTranslate(), u"maybe old"_s);
    EXPECT_FALSE(appState.isPendingTextWanted);
    ASSERT_TRUE(press());
    deliver({u"new"_s, LateSelection::Age::recent});
    EXPECT_EQ(appState.pendingTextToTranslate(), u"new"_s);
    EXPECT_TRUE(appState.isPendingTextWanted);
    ASSERT_TRUE(press());
    deliver({});
    EXPECT_EQ(appState.pendingTextToTranslate(), QString());
    EXPECT_EQ(appState.notice(), u"Không có chữ nào đang được chọn"_s);

    // Not where the element has spoken.
    desktop.accessibility.focused = {.hasNoSelection = true};
    EXPECT_FALSE(press());
    desktop.accessibility.focused = {.holdsPassword = true};
    EXPECT_FALSE(press());
    EXPECT_EQ(appState.notice(), u"Không có chữ nào đang được chọn"_s);
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
    EXPECT_EQ(preparations, 5) << "each is a connection";
    pass(1s);
    EXPECT_THAT(requested, SizeIs(5));
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

TEST_F(Shell, what_comes_while_the_user_draws_opens_the_popover_once_that_is_done) {
    launch();
    selectForCopying();
    region.draws = false;
    const auto fetch = [this] {
        delegate->handleGlobalHotKey();
        desktop.pasteboard.copy(u"copied"_s);
    };
    const auto handOver = [this] { delegate->translateSelectedText(u"handed over"_s); };
    const std::pair<std::function<void()>, QString> cases[] = {
        {fetch, u"copied"_s}, {handOver, u"handed over"_s}, {[this] { delegate->showPopover(); }, QString()}};
    for (const auto& [come, text] : cases) {
        popover.performClose();
        popover.anchors.clear();
        appState.pendingTextToTranslate = QString();
        region.onRun = [&, come = come] {
            come();
            desktop.clock.advance(1s);
            EXPECT_THAT(popover.anchors, IsEmpty()) << "opened over the picture";
            EXPECT_EQ(appState.pendingTextToTranslate(), QString());
        };
        desktop.hotKeys.handler(ocrHotKeyID);
        desktop.clock.advance(150ms);
        ASSERT_TRUE(eventually([this] { return popover.shown; }));
        desktop.clock.advance(1s);
        EXPECT_EQ(appState.pendingTextToTranslate(), text);
    }
}

TEST_F(Shell, the_capture_key_pressed_again_leaves_the_picture_that_is_being_read_alone) {
    launch();
    recognizer.reads({{.boundingBox = {0.1, 0.5, 0.5, 0.1}, .candidates = {u"chữ"_s}}});
    const auto press = [this] {
        desktop.hotKeys.handler(ocrHotKeyID);
        desktop.clock.advance(0ms);
    };
    recognizer.onRecognize = [&] {
        press();
        EXPECT_EQ(log.messages().count(u"handleScreenOCRHotKey: triggered"_s), 2);
        EXPECT_TRUE(appState.isReadingCapture());
        EXPECT_FALSE(recognizer.stops.back().stop_requested());
        EXPECT_TRUE(popover.shown);
    };
    press();
    desktop.clock.advance(150ms);
    EXPECT_TRUE(eventually([this] { return appState.pendingTextToTranslate() == u"chữ"; }));
    EXPECT_FALSE(appState.isReadingCapture());
    EXPECT_THAT(recognizer.images, SizeIs(1));
}

}  // namespace
}  // namespace tralio
