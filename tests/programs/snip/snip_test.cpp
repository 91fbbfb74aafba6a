#include "ocr/text_recognizer.h"
#include "programs/snip/label_placement.h"
#include "programs/snip/picture_file.h"
#include "programs/snip/region_selection.h"
#include "programs/snip/scale_settings.h"
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

TEST_F(RegionSelectionTest, letting_go_takes_the_pixels_from_first_to_last_and_no_drag_at_all_cancels) {
    const std::tuple<QPoint, QPoint, std::optional<QRect>> cases[] = {
        {{100, 100}, {299, 199}, QRect(100, 100, 200, 100)},
        {{299, 199}, {100, 100}, QRect(100, 100, 200, 100)},
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

TEST_F(
    RegionSelectionTest, keys_place_move_size_and_confirm_a_rectangle_that_stays_on_the_screen_and_visible) {
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

    // In logical pixels.
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

constexpr QSize label(80, 24);
constexpr int gap = 12;

TEST(SizeLabel, stands_off_the_corner_that_changes_where_there_is_room) {
    constexpr QRect monitor(0, 0, 1000, 800);
    constexpr QRect area(300, 300, 200, 100);
    EXPECT_EQ(placeSizeLabel(label, area, area.bottomRight(), monitor, gap).topLeft(), QPoint(511, 411));
    EXPECT_EQ(placeSizeLabel(label, area, area.topLeft(), monitor, gap).bottomRight(), QPoint(288, 288));
    EXPECT_EQ(placeSizeLabel(label, area, area.topRight(), monitor, gap).bottomLeft(), QPoint(511, 288));
}

TEST(SizeLabel, never_leaves_the_monitor_and_never_covers_a_corner) {
    QRandomGenerator random(4);
    // Every edge and corner of the monitor comes often.
    const auto along = [&random](int begin, int length) {
        const int place = random.bounded(-length / 4, length + length / 4);
        return begin + std::clamp(place, 0, length - 1);
    };
    for (const QRect& monitor : {QRect(0, 0, 1280, 1024), QRect(-800, 300, 800, 600)}) {
        const auto anywhereIn = [&along](const QRect& box) {
            return QPoint(along(box.left(), box.width()), along(box.top(), box.height()));
        };
        for (int i = 0; i < 20000; ++i) {
            const QPoint from = anywhereIn(monitor);
            const QRect near = monitor & QRect(from - QPoint(90, 90), QSize(180, 180));
            const QPoint to = anywhereIn(random.bounded(2) == 0 ? near : monitor);
            const QRect area = QRect(from, QSize(1, 1)) | QRect(to, QSize(1, 1));
            SCOPED_TRACE(testing::Message()
                << area.x() << ' ' << area.y() << ' ' << area.width() << ' ' << area.height());
            const QRect place = placeSizeLabel(label, area, to, monitor, gap);
            ASSERT_EQ(place.size(), label);
            ASSERT_TRUE(monitor.contains(place));
            for (const QPoint corner :
                {area.topLeft(), area.topRight(), area.bottomLeft(), area.bottomRight()})
                ASSERT_FALSE(place.contains(corner));
        }
    }
}

TEST(MonitorLayout, finds_the_monitor_of_a_place_and_the_scale_of_an_area) {
    EXPECT_EQ(monitors.bounds(), QRect(0, 0, 3000, 1800));
    EXPECT_EQ(monitors.at({999, 300}).scale, 1);
    EXPECT_EQ(monitors.at({1000, 300}).scale, 2);
    EXPECT_EQ(monitors.at({900, 1700}).scale, 2);  // no monitor there: the nearest
    EXPECT_EQ(monitors.scaleOf({900, 300, 300, 50}), 2);
    EXPECT_EQ(monitors.scaleOf({800, 300, 300, 50}), 1);
    EXPECT_EQ(monitors.at({2000, 300}).pixels(10), 20);
    EXPECT_EQ(monitors.at({0, 0}).pixels(0.2), 1);
}

TEST(PictureFile, tells_the_ratio_and_is_for_its_owner_alone) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"a.png"_s);
    ASSERT_EQ(PictureFile::write(QImage(3, 2, QImage::Format_RGB32), 1.5, path), QString());

    const QImage read(path);
    EXPECT_EQ(read.text(devicePixelRatioKey.toString()), u"1.5");  // as the recogniser reads it
    EXPECT_EQ(read.dotsPerMeterX(), 5669);                         // 144 dots per inch
    EXPECT_EQ(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{u"a.png"_s});
}

TEST(ScaleSettings, follow_the_environment_and_the_desktops_resolution) {
    const QString atTwo = u"Xcursor.size:\t24\nXft.dpi:\t192\nXft.antialias:\t1\n"_s;
    const std::tuple<std::vector<std::pair<const char*, const char*>>, QString, double, double> cases[] = {
        {{}, {}, 1, 1},
        {{}, atTwo, 2, 2},
        {{{"QT_SCALE_FACTOR", "2"}}, u"Xft.dpi: 144"_s, 3, 3},
        {{{"GDK_SCALE", "2"}}, {}, 2, 2},
        {{{"GDK_SCALE", "2"}}, atTwo, 2, 2},  // the desktop's resolution has it already
        {{{"QT_FONT_DPI", "120"}}, atTwo, 1.25, 1.25},
        {{{"QT_SCREEN_SCALE_FACTORS", "1.5;2"}}, {}, 1.5, 2},
        {{{"QT_SCREEN_SCALE_FACTORS", "HDMI-1=2;DP-1=1.25"}}, atTwo, 1.25, 2},
        {{{"QT_SCREEN_SCALE_FACTORS", "HDMI-1=1.5"}}, atTwo, 2, 1.5},
        {{{"QT_SCREEN_SCALE_FACTORS", "1;2"}, {"QT_SCALE_FACTOR", "1.5"}}, {}, 1.5, 3},
        {{{"QT_SCALE_FACTOR", "nonsense"}, {"GDK_SCALE", "-1"}}, u"Xft.dpi: x"_s, 1, 1},
        {{{"QT_SCALE_FACTOR", "0.2"}}, {}, 1, 1},
    };
    const auto clearEnvironment = [] {
        for (const char* name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI", "GDK_SCALE"})
            qunsetenv(name);
    };
    for (const auto& [environment, resources, first, second] : cases) {
        clearEnvironment();
        for (const auto& [name, value] : environment)
            qputenv(name, value);
        const ScaleSettings settings = ScaleSettings::fromSession(resources);
        SCOPED_TRACE(testing::PrintToString(environment) + resources.toStdString());
        EXPECT_DOUBLE_EQ(settings.scaleOf(u"DP-1"_s, 0), first);
        EXPECT_DOUBLE_EQ(settings.scaleOf(u"HDMI-1"_s, 1), second);
    }
    clearEnvironment();
}

}  // namespace
}  // namespace tralio
