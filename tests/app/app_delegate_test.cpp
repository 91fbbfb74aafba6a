#include "app/app_delegate.h"

#include "app/shell_fixture.h"

namespace tralio {
namespace {

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
    for (const auto& [isFirstStart, inTray] :
        {std::pair(true, false), std::pair(true, true), std::pair(false, false)}) {
        FakePopover host;
        statusItem.inTray = inTray;
        delegate = delegateWith(host, isFirstStart);
        launch();
        desktop.hotKeys.userAsked = true;
        desktop.clock.advance(1min);
        EXPECT_THAT(host.anchors, IsEmpty()) << "it would cover the desktop's question";
        desktop.hotKeys.userAsked = false;
        desktop.clock.advance(10s);
        EXPECT_EQ(host.shown, isFirstStart && !inTray);
        host.performClose();
        desktop.clock.advance(1h);
        EXPECT_FALSE(host.shown) << "more than once";
        delegate.reset();
    }
}

TEST_F(Shell, from_the_launch_on_the_tray_item_and_the_panels_open_and_close_the_popover) {
    appState.showPopover();
    EXPECT_FALSE(popover.shown);
    launch();
    const auto expect = [this](bool isShown, const std::function<void()>& act) {
        const QUuid before = appState.openPopoverSignal();
        act();
        EXPECT_EQ(popover.shown, isShown);
        EXPECT_EQ(appState.openPopoverSignal() != before, isShown) << "an opening is announced, no closing";
    };
    expect(
        true, [this] { appState.showPopover(); });
    expect(false, [this] { appState.hidePopover(); });
    popover.anchors.clear();
    expect(true, statusItem.action);
    expect(false, statusItem.action);

    const auto first = std::exchange(statusItem.place, std::nullopt);
    statusItem.action();
    EXPECT_EQ(popover.anchors, (std::vector<std::optional<QRect>>{first, std::nullopt}));
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
    press(textHotKeyID, 1s);
    EXPECT_THAT(popover.anchors, IsEmpty());
    EXPECT_EQ(appState.translateTriggerId(), std::nullopt);
}

TEST_F(Shell, texts_from_another_program_are_requested_trimmed_and_of_a_flood_the_newest_now_and_then) {
    const auto pass = [&](std::chrono::milliseconds time) {
        desktop.clock.advance(time);
        EXPECT_TRUE(nextTurn());
    };
    delegate->translateSelectedText(u" \n\t"_s);
    delegate->translateSelectedText(u"  from a menu\n"_s);
    pass(79ms);
    EXPECT_THAT(popover.anchors, SizeIs(1));
    EXPECT_THAT(requested, IsEmpty());
    pass(1ms);
    EXPECT_THAT(requested, ElementsAre(u"from a menu"_s));
    EXPECT_EQ(appState.lastHandledChangeCount, -1) << "the clipboard is left alone";

    pass(1s);
    requested.clear();
    preparations = 0;
    for (int i = 0; i < 1000; ++i) {
        delegate->translateSelectedText(QString::number(i));
        pass(1ms);
    }
    pass(2s);
    EXPECT_THAT(requested, ElementsAre(u"79"_s, u"379"_s, u"679"_s, u"979"_s, u"999"_s));
    EXPECT_EQ(preparations, 5) << "each is a connection";

    requested.clear();
    delegate->translateSelectedText(u"shown"_s);
    pass(100ms);
    delegate->translateSelectedText(u"waits"_s);
    pass(100ms);
    launch();
    select(u"by the hand since"_s);
    press(textHotKeyID);
    pass(2s);
    EXPECT_THAT(requested, ElementsAre(u"shown"_s, u"by the hand since"_s));
}

}  // namespace
}  // namespace tralio
