#include "programs/snip/region_selection.h"

#include "support/testing.h"

namespace tralio {
namespace {

using Stage = RegionSelection::Stage;
using ArrowEffect = RegionSelection::ArrowEffect;
using Stride = RegionSelection::Stride;

constexpr QPoint left(-1, 0), right(1, 0), up(0, -1), down(0, 1);

/// A monitor at 1x and, to the right of it and lower, one at 2x.
const MonitorLayout monitors({{u"one"_s, {0, 0, 1000, 800}, 1}, {u"two"_s, {1000, 200, 2000, 1600}, 2}});

struct RegionSelectionTest : testing::Test {
    RegionSelection selection{monitors, {500, 400}};

    void drag(QPoint from, QPoint to) {
        selection.press(from);
        selection.moveTo((from + to) / 2);
        selection.moveTo(to);
    }
    void place(const QRect& wanted) {
        selection.pressArrow(down, ArrowEffect::Move, Stride::Fine);
        drag(selection.area()->topLeft(), wanted.topLeft());
        selection.release(wanted.topLeft());
        drag(selection.area()->bottomRight(), wanted.bottomRight());
        selection.release(wanted.bottomRight());
        ASSERT_EQ(selection.area(), wanted);
    }
};

TEST_F(
    RegionSelectionTest, letting_go_takes_the_pixels_from_the_first_to_the_last_and_no_drag_at_all_cancels) {
    struct Case {
        QPoint from, to;
        std::optional<QRect> taken;
    };
    const Case cases[] = {
        {{100, 100}, {299, 199}, QRect(100, 100, 200, 100)},
        {{299, 199}, {100, 100}, QRect(100, 100, 200, 100)},
        {{100, 199}, {299, 100}, QRect(100, 100, 200, 100)},
        {{900, 700}, {1100, 900}, QRect(900, 700, 201, 201)},  // from one monitor to the other
        {{100, 100}, {104, 100}, QRect(100, 100, 5, 1)},
        {{100, 100}, {100, 100}, {}},
        {{100, 100}, {103, 97}, {}},
        {{1500, 900}, {1507, 900}, {}},  // logical pixels count
        {{1500, 900}, {1492, 900}, QRect(1492, 900, 9, 1)},
    };
    for (const auto& [from, to, taken] : cases) {
        SCOPED_TRACE(testing::Message() << to.x() << ' ' << to.y());
        RegionSelection drawn(monitors, {});
        drawn.press(from);
        drawn.moveTo({700, 600});
        drawn.moveTo(to);
        EXPECT_EQ(drawn.stage(), Stage::Drawing);
        EXPECT_EQ(drawn.area(), taken);
        if (taken && taken->height() > 1)
            EXPECT_EQ(drawn.activeCorner(), to);
        drawn.release(to);
        EXPECT_EQ(drawn.stage(), taken ? Stage::Confirmed : Stage::Cancelled);

        drawn.press({1, 1});
        drawn.release({300, 300});
        drawn.cancel();
        EXPECT_EQ(drawn.stage(), taken ? Stage::Confirmed : Stage::Cancelled) << "what is over stays so";
        EXPECT_EQ(drawn.area(), taken);
    }
}

TEST_F(RegionSelectionTest, keys_place_move_size_and_confirm_a_rectangle) {
    selection.pressArrow(right, ArrowEffect::Resize, Stride::Coarse);
    const QRect placed = selection.area().value();
    EXPECT_EQ(selection.stage(), Stage::Placed);
    EXPECT_TRUE(placed.contains(selection.pointer()));

    selection.pressArrow(left, ArrowEffect::Move, Stride::Coarse);
    selection.pressArrow(up, ArrowEffect::Move, Stride::Fine);
    selection.pressArrow(right, ArrowEffect::Resize, Stride::Fine);
    selection.pressArrow(down, ArrowEffect::Resize, Stride::Coarse);
    const QRect wanted = placed.translated(-10, -1).adjusted(0, 0, 1, 10);
    EXPECT_EQ(selection.area(), wanted);
    EXPECT_EQ(selection.activeCorner(), wanted.bottomRight());
    selection.moveTo({0, 0});  // the pointer, unpressed, has no part in it
    selection.confirm();
    EXPECT_EQ(selection.stage(), Stage::Confirmed);
    EXPECT_EQ(selection.area(), wanted);
}

TEST_F(RegionSelectionTest, keys_step_in_logical_pixels_and_keep_the_rectangle_on_the_screen_and_visible) {
    RegionSelection fine(monitors, {2990, 1790});
    fine.confirm();
    QRect area = fine.area().value();
    EXPECT_EQ(area.bottomRight(), QPoint(2999, 1799));
    fine.pressArrow(left, ArrowEffect::Move, Stride::Fine);
    EXPECT_EQ(fine.area(), area.translated(-2, 0));
    for (int i = 0; i < 300; ++i)
        for (const QPoint direction : {right, down})
            fine.pressArrow(direction, ArrowEffect::Move, Stride::Coarse);
    EXPECT_EQ(fine.area(), area);
    fine.pressArrow(right, ArrowEffect::Resize, Stride::Coarse);
    EXPECT_EQ(fine.area(), area);
    for (int i = 0; i < 300; ++i)
        for (const QPoint direction : {left, up})
            fine.pressArrow(direction, ArrowEffect::Resize, Stride::Coarse);
    EXPECT_EQ(fine.area(), QRect(area.topLeft(), QSize(16, 16)));
}

TEST_F(RegionSelectionTest, the_pointer_pulls_moves_and_turns_over_a_placed_rectangle) {
    struct Case {
        const char* what;
        QPoint from, to;
        QRect result;
        QRect placed{200, 200, 200, 200};
    };
    const Case cases[] = {
        {"the inside moves", {300, 300}, {310, 290}, {210, 190, 200, 200}},
        {"but not off the screen", {300, 300}, {0, 0}, {0, 0, 200, 200}},
        {"a side", {201, 300}, {181, 350}, {180, 200, 220, 200}},
        {"just outside of a side", {404, 300}, {424, 300}, {200, 200, 220, 200}},
        {"a corner", {399, 200}, {409, 190}, {200, 190, 210, 210}},
        {"a side pulled over the other", {399, 300}, {100, 300}, {100, 200, 101, 200}},
        {"the inside of a small one", {304, 304}, {314, 304}, {310, 300, 12, 12}, {300, 300, 12, 12}},
    };
    for (const Case& given : cases) {
        selection = RegionSelection(monitors, {500, 400});
        place(given.placed);
        drag(given.from, given.to);
        EXPECT_EQ(selection.stage(), Stage::Adjusting) << given.what;
        selection.release(given.to);
        EXPECT_EQ(selection.stage(), Stage::Placed) << given.what;
        EXPECT_EQ(selection.area(), given.result) << given.what;
    }
    drag({600, 600}, {700, 700});
    selection.release({700, 700});
    EXPECT_EQ(selection.stage(), Stage::Confirmed);
    EXPECT_EQ(selection.area(), QRect(600, 600, 101, 101));
}

}  // namespace
}  // namespace tralio
