#include "app/shell_fixture.h"

namespace tralio {
namespace {

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

TEST_F(Shell, the_text_hot_key_pressed_twice_asks_for_one_text_and_says_nothing_over_its_result) {
    launch();
    selectForCopying();
    press(textHotKeyID, 20ms);
    press(textHotKeyID);
    desktop.pasteboard.copy(u"copied"_s);
    desktop.clock.advance(10ms);  // the popover is on its way to the front
    press(textHotKeyID, 1s);
    EXPECT_TRUE(nextTurn());
    EXPECT_THAT(requested, SizeIs(1));
    EXPECT_THAT(desktop.accessibility.pressed, SizeIs(1));

    desktop.workspace.front = {static_cast<qint32>(QCoreApplication::applicationPid()), {}, {}};
    press(textHotKeyID, 1s);
    EXPECT_EQ(appState.notice(), QString());
    EXPECT_TRUE(nextTurn());
    EXPECT_THAT(requested, SizeIs(1));

    selectForCopying();
    press(textHotKeyID);
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
    const QString nothing = u"Không có chữ nào đang được chọn"_s;
    const auto asks = [&] {
        deliver = {};
        popover.shown = false;
        appState.notice = QString();
        appState.pendingTextToTranslate = QString();
        press(textHotKeyID, 1s);
        return deliver != nullptr;
    };
    for (const LateSelection& shown : {LateSelection{u"maybe old"_s, LateSelection::Use::offer},
             LateSelection{u"new"_s, LateSelection::Use::translate}, LateSelection()}) {
        ASSERT_TRUE(asks());
        deliver(shown);
        EXPECT_EQ(appState.pendingTextToTranslate(), shown.text);
        EXPECT_EQ(appState.notice() == nothing, shown.text.isEmpty());
        EXPECT_EQ(std::exchange(appState.lastHandledChangeCount, -1),
            shown.text.isEmpty() ? -1 : desktop.pasteboard.count)
            << "what was copied before is older";
        if (!shown.text.isEmpty())
            EXPECT_EQ(appState.isPendingTextWanted, shown.use == LateSelection::Use::translate);
        EXPECT_EQ(appState.notice() == u"Nhấn Return để dịch chữ này",
            !shown.text.isEmpty() && shown.use == LateSelection::Use::offer);
    }
    // Not where the element has spoken.
    desktop.accessibility.focused = {.hasNoSelection = true};
    EXPECT_FALSE(asks());
    desktop.accessibility.focused = {.holdsPassword = true};
    EXPECT_FALSE(asks());
    EXPECT_EQ(appState.notice(), nothing);
    EXPECT_TRUE(popover.shown);
    EXPECT_EQ(log.messages().last(), u"handleGlobalHotKey: fetchSelectedText finished with text='nil'"_s);
}

TEST_F(Shell, the_popover_is_away_while_the_user_draws_and_what_yields_no_text_requests_nothing) {
    launch();
    region.onRun = [this] { EXPECT_FALSE(popover.shown) << "in the picture"; };
    const auto capture = [this] {
        popover.shown = true;
        press(ocrHotKeyID, 150ms);
        EXPECT_TRUE(eventually([this] { return popover.shown; }));
    };
    region.draws = false;
    capture();
    EXPECT_TRUE(nextTurn());
    EXPECT_EQ(log.messages().last(), u"handleScreenOCRHotKey: triggered"_s) << "a cancel is no error";
    EXPECT_EQ(appState.notice(), QString());
    EXPECT_FALSE(appState.isReading());

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

    recognizer.answer = []() -> std::vector<TextObservation> { throw OCRError::invalidImage(); };
    capture();
    EXPECT_TRUE(eventually([&] { return appState.notice() == OCRError::invalidImage().errorDescription(); }));
    desktop.clock.advance(5999ms);
    EXPECT_NE(appState.notice(), QString()) << "longer words";
    desktop.clock.advance(1ms);
    EXPECT_EQ(appState.notice(), QString());
}

TEST_F(Shell, what_comes_while_the_user_draws_opens_the_popover_once_that_is_done) {
    launch();
    selectForCopying();
    region.draws = false;
    const auto expectAfterwards = [this](const QString& text, const auto& come) {
        popover.performClose();
        popover.anchors.clear();
        appState.pendingTextToTranslate = QString();
        region.onRun = [&] {
            come();
            desktop.clock.advance(1s);
            EXPECT_THAT(popover.anchors, IsEmpty()) << "opened over the picture";
            EXPECT_EQ(appState.pendingTextToTranslate(), QString());
        };
        press(ocrHotKeyID, 150ms);
        ASSERT_TRUE(eventually([this] { return popover.shown; }));
        desktop.clock.advance(1s);
        EXPECT_EQ(appState.pendingTextToTranslate(), text);
    };
    const auto fetch = [this] { delegate->handleGlobalHotKey(); };
    const auto copy = [&] {
        fetch();
        desktop.pasteboard.copy(u"copied"_s);
    };
    const auto handOver = [this] { delegate->translateSelectedText(u"handed over"_s); };
    expectAfterwards(u"copied"_s, copy);
    expectAfterwards(u"handed over"_s, handOver);
    expectAfterwards(QString(), [this] { delegate->showPopover(); });
    expectAfterwards(QString(), fetch);  // which finds nothing
    EXPECT_EQ(appState.notice(), QString()) << "not over what the capture brings";
    select(u"later"_s);
    press(textHotKeyID, 1s);
    EXPECT_EQ(appState.pendingTextToTranslate(), u"later"_s) << "the next press counts";

    // The region that is drawn then comes after the text, whose request does not stop its reading; a text
    // that comes while it is read does.
    region.draws = true;
    const auto held = recognizer.hold = std::make_shared<QPromise<void>>();
    held->start();
    expectAfterwards(u"handed over"_s, handOver);
    ASSERT_THAT(recognizer.stops, SizeIs(1));
    EXPECT_FALSE(recognizer.stops.back().stop_requested());
    statusItem.action();
    desktop.clock.advance(80ms);
    EXPECT_FALSE(recognizer.stops.back().stop_requested()) << "by what the clipboard has had all along";
    appState.notice = u"said"_s;
    press(textHotKeyID);
    EXPECT_TRUE(recognizer.stops.back().stop_requested());
    desktop.clock.advance(80ms);
    EXPECT_EQ(appState.notice(), QString()) << "it is of something else";
    held->finish();
    EXPECT_TRUE(eventually([this] { return !captures.isReading(); }));

    // Beside the desktop's own dialog there is room for a popover.
    recognizer.hold = nullptr;
    pictureSays(u"chữ"_s);
    region.isWindow = true;
    region.onRun = [&] {
        popover.performClose();
        delegate->translateSelectedText(u"beside it"_s);
        desktop.clock.advance(1s);
        EXPECT_EQ(appState.pendingTextToTranslate(), u"beside it"_s);
        EXPECT_FALSE(captures.isReading());
    };
    press(ocrHotKeyID, 150ms);
    EXPECT_TRUE(eventually([this] { return appState.pendingTextToTranslate() == u"chữ"; }));
}

TEST_F(Shell, a_captured_text_is_requested_once_though_the_key_is_pressed_again_while_it_is_read) {
    launch();
    pictureSays(u"  chữ \n"_s);
    recognizer.onRecognize = [&] {
        press(ocrHotKeyID);
        EXPECT_EQ(log.messages().count(u"handleScreenOCRHotKey: triggered"_s), 2);
        EXPECT_TRUE(appState.isReading());
        EXPECT_FALSE(recognizer.stops.back().stop_requested());
        EXPECT_TRUE(popover.shown);
        popover.performClose();
        press(ocrHotKeyID);
        EXPECT_TRUE(popover.shown) << "which tells how far the reading is";
    };
    press(ocrHotKeyID, 150ms);
    EXPECT_TRUE(eventually([this] { return appState.pendingTextToTranslate() == u"chữ"; }));
    EXPECT_FALSE(appState.isReading());
    EXPECT_THAT(recognizer.images, SizeIs(1));
}

}  // namespace
}  // namespace tralio
