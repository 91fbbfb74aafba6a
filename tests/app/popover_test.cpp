#include "app/popover_focus.h"
#include "app/popover_placement.h"
#include "support/fake_clock.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// A popover's window in the hands of a user and of a window manager.
class PopoverFocusTest : public testing::Test, protected PopoverFocus::Window {
protected:
    bool isActive() const override { return active; }
    bool isInFront() const override {
        ++looks;
        return inFront;
    }
    bool isUnderPointer() const override { return underPointer; }
    bool isAidUnderPointer() const override { return aidUnderPointer; }
    void bringToFront() override { ++asked; }
    void closeForUser() override {
        isOpen = false;
        focus.hidden();
    }

    /// Shown, with the keyboard, for a while already.
    void open() {
        isOpen = true;
        focus.shown();
        gain();
        clock.advance(5s);
    }
    void gain() {
        active = true;
        focus.activated();
    }
    void lose() {
        active = false;
        focus.deactivated();
    }
    void click(bool inside) {
        underPointer = inside;
        focus.pressed();
        focus.released();
    }

    bool isOpen = false;
    bool active = false;
    bool inFront = false;
    bool underPointer = false;
    bool aidUnderPointer = false;
    mutable int looks = 0;
    int asked = 0;  ///< for the keyboard
    FakeClock clock;
    PopoverFocus focus{*this, clock};
};

TEST_F(PopoverFocusTest, a_click_elsewhere_closes_it_whether_or_not_it_takes_the_keyboard) {
    for (const bool takesKeyboard : {false, true}) {
        open();
        click(true);
        clock.advance(1s);
        EXPECT_TRUE(isOpen);
        aidUnderPointer = true;
        click(false);
        EXPECT_TRUE(isOpen) << "an input method's list";
        aidUnderPointer = false;
        focus.pressed();
        if (takesKeyboard)
            lose();
        clock.advance(1s);
        EXPECT_TRUE(isOpen) << "the button is still down: it may become a drag";
        focus.released();
        EXPECT_FALSE(isOpen);
    }
    clock.advance(1s);
    click(false);
    EXPECT_FALSE(focus.wasJustClosed()) << "a click while it is closed";
}

TEST_F(PopoverFocusTest, what_is_in_front_is_looked_at_ever_more_rarely_and_left_when_it_no_longer_is) {
    open();
    inFront = true;
    lose();
    clock.advance(1s);
    EXPECT_GT(looks, 3);
    looks = 0;
    clock.advance(100s);
    EXPECT_LT(looks, 150);
    inFront = false;
    clock.advance(1s);
    EXPECT_FALSE(isOpen) << "another window has come to the front of a locked screen";

    isOpen = true;
    focus.shown();
    inFront = true;
    focus.shown();
    inFront = false;
    clock.advance(350ms);
    EXPECT_FALSE(isOpen) << "left by the keyboard unheard";
}

TEST_F(PopoverFocusTest, what_is_dragged_to_it_brings_it_to_the_front_and_a_selection_up_to_there_closes_it) {
    const auto release = [this](const auto& whileDown, const auto& afterwards) {
        open();
        underPointer = false;
        focus.pressed();
        lose();
        clock.advance(1s);
        whileDown();
        const int askedBefore = asked;
        underPointer = true;
        focus.released();
        clock.advance(299ms);
        EXPECT_TRUE(isOpen);
        afterwards();
        clock.advance(1ms);
        return asked > askedBefore;
    };
    const auto drag = [this] { focus.dragged(); };
    const auto nothing = [] {};
    EXPECT_FALSE(release(nothing, nothing));
    EXPECT_FALSE(isOpen) << "a selection";
    (void)release(nothing, [this] { focus.shown(); });
    EXPECT_TRUE(isOpen) << "the user has pressed the hot key meanwhile";
    EXPECT_FALSE(release(nothing, [this] { click(true); }));
    EXPECT_TRUE(isOpen) << "the user has clicked into it meanwhile";
    EXPECT_TRUE(release(nothing, drag)) << "told late";
    EXPECT_TRUE(release(drag, nothing));
    gain();
    clock.advance(3s);
    EXPECT_TRUE(isOpen);

    // And the other way round: what begins inside is not a click elsewhere.
    focus.pressed();
    underPointer = false;
    focus.released();
    EXPECT_TRUE(isOpen);
}

TEST_F(PopoverFocusTest, the_keyboards_going_elsewhere_closes_it_unless_it_follows_the_pointer) {
    const std::map<QByteArray, std::function<void()>> steps = {{"moved", [this] { focus.moved(); }},
        {"inside", [this] { focus.movedInside(); }}, {"left", [this] { focus.left(); }},
        {"switched", [this] { focus.switched(); }}, {"gain", [this] { gain(); }},
        {"here", [this] { underPointer = true; }}, {"lose", [this] { lose(); }}};
    const std::tuple<QByteArray, bool, const char*> cases[] = {
        {"moved lose", true, "it has gone along with the pointer"},
        {"inside left lose", true, "the pointer has just left"},
        {"lose 20 inside left", true, "told of the keyboard first"},
        {"moved 40 moved 500 lose", true, "the window manager's delay, in which a motion tells nothing new"},
        {"lose", false, "left by the keyboard"},
        {"moved gain lose", false, "a motion before it had the keyboard has not taken it"},
        {"moved switched lose", false, "a key after it has, as those of a window switcher do"},
        {"inside 600 left lose", false, "covered, with the pointer where it was"},
        {"inside left 150 lose", false, "the pointer had left before"},
        {"here moved lose", false, "the pointer is still here: it has taken nothing along"},
        {"moved inside left 601 lose", false, "moved long before"},
    };
    for (const auto& [way, stays, why] : cases) {
        open();
        underPointer = false;
        for (const QByteArray& step : way.split(' '))
            steps.contains(step) ? steps.at(step)() : clock.advance(step.toInt() * 1ms);
        clock.advance(50ms);
        EXPECT_EQ(isOpen, stays) << why;
        clock.advance(5s);
        EXPECT_EQ(isOpen, stays) << why;
        click(false);
        EXPECT_FALSE(isOpen) << "a click still closes it";
    }
}

TEST_F(PopoverFocusTest, a_slow_window_manager_is_asked_again_and_one_that_gives_no_keyboard_leaves_it_open) {
    isOpen = true;
    focus.shown();
    EXPECT_EQ(asked, 1);
    clock.advance(1s);
    const int inTheFirstSecond = asked;
    EXPECT_GT(inTheFirstSecond, 5);
    clock.advance(10s);
    EXPECT_TRUE(isOpen);
    EXPECT_LT(asked, 3 * inTheFirstSecond) << "for ever";
    EXPECT_EQ(clock.pending(), 0);

    focus.shown();
    gain();
    lose();
    clock.advance(250ms);
    EXPECT_TRUE(isOpen) << "told of the time before it was shown";
    clock.advance(100ms);
    EXPECT_FALSE(isOpen);
}

TEST_F(PopoverFocusTest, that_it_was_just_closed_by_a_click_is_known_for_that_click) {
    open();
    click(false);
    EXPECT_TRUE(focus.wasJustClosed());
    clock.advance(299ms);
    EXPECT_TRUE(focus.wasJustClosed());
    clock.advance(1ms);
    EXPECT_FALSE(focus.wasJustClosed());

    open();
    click(false);
    focus.shown();
    EXPECT_FALSE(focus.wasJustClosed()) << "opened again";
    focus.hidden();
    clock.advance(5s);
    EXPECT_FALSE(focus.wasJustClosed()) << "closed by the program";
}

constexpr QSize popover{530, 585};

TEST(PopoverPlacement, is_at_the_anchor_and_within_the_screen_without_its_panels_and_lower_on_a_low_one) {
    const auto expect = [](const char* situation, const QRect& available, const std::optional<QRect>& anchor,
                            std::pair<int, int> corner) {
        const QRect place = popoverPlace(popover, available, anchor);
        EXPECT_EQ(std::pair(place.left(), place.top()), corner) << situation;
        EXPECT_EQ(place.size(), popover) << situation;
    };
    constexpr QRect belowTopPanel{0, 30, 1920, 1050};
    expect("centred below an item of a top panel", belowTopPanel, QRect{1200, 3, 24, 24}, {947, 36});
    expect("above an item of a bottom panel", {0, 0, 1920, 1040}, QRect{1200, 1048, 24, 24}, {947, 449});
    expect("pushed in from the right edge", belowTopPanel, QRect{1890, 3, 24, 24}, {1384, 36});
    expect("beside a left panel, upper half", {48, 0, 1872, 1080}, QRect{12, 200, 24, 24}, {54, 230});
    expect("no room below an upper anchor", {0, 0, 1024, 700}, QRect{500, 300, 24, 24}, {247, 109});
    expect("top right without an anchor", belowTopPanel, std::nullopt, {1384, 36});
    expect("the beginning on a small screen", {0, 0, 480, 400}, QRect{400, 0, 20, 20}, {6, 6});
    expect("a screen on the left", {-1280, -170, 1280, 994}, QRect{-60, -195, 24, 24}, {-536, -164});

    for (const auto& [screen, height] : {std::pair(1080, 585), std::pair(597, 585), std::pair(596, 584),
             std::pair(546, 534), std::pair(400, 400)})
        EXPECT_EQ(popoverHeight(popover.height(), {0, 30, 1024, screen}), height);
}

}  // namespace
}  // namespace tralio
