#include "desktop/fixtures.h"
#include "platform/scripted_tray.h"

namespace tralio {
namespace {

/// Whether the popover is attached to `place`, in screen pixels, above or below it.
testing::AssertionResult hangsFrom(const QRect& popover, const QPoint& place, int ratio = 1) {
    const int nearest = std::min(std::abs(popover.top() - place.y()), std::abs(popover.bottom() - place.y()));
    if (std::abs(popover.center().x() - place.x()) <= 2 * ratio && nearest <= 30 * ratio)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "it is at " << popover.x() << ", " << popover.y() << ", "
                                       << popover.width() << " x " << popover.height();
}

/// A desktop with a tray on the session bus, and the program once its item is registered.
struct TrayOnTheBus : testing::Test {
    void start(
        const QSize& screen, const std::function<void()>& prepare = [] {}) {
        desktop.emplace(VirtualDesktop::Tray::absent, screen);
        prepare();
        tray.emplace();
        program.emplace(*desktop);
        ASSERT_TRUE(itemComes());
    }
    [[nodiscard]] bool itemComes() const {
        return waitUntil([this] { return !tray->item.isEmpty(); });
    }
    QString askItem(const QString& method, const QStringList& arguments) const {
        return desktop->callOnBus(tray->item, u"/StatusNotifierItem"_s, method, arguments);
    }
    QString propertyOfItem(const QString& name) const {
        return askItem(u"org.freedesktop.DBus.Properties.Get"_s, {u"org.kde.StatusNotifierItem"_s, name});
    }
    /// Does what a tray does for a click on the item at this pixel of the screen.
    void click(const QPoint& pixel) const {
        askItem(u"org.kde.StatusNotifierItem.Activate"_s,
            {QString::number(pixel.x()), QString::number(pixel.y())});
    }
    /// The sizes of the item's pictures that are complete and not empty.
    [[nodiscard]] QList<int> pictures() const {
        static const QRegularExpression picture(u"\\((\\d+), \\1, \\[(?:byte )?([^]]*)\\]"_s);
        QList<int> sides;
        for (const auto& match : picture.globalMatch(propertyOfItem(u"IconPixmap"_s))) {
            const QStringList bytes = match.captured(2).split(u", "_s);
            const int side = match.captured(1).toInt();
            if (bytes.size() == side * side * 4 && bytes.count(u"0x00"_s) < bytes.size())
                sides += side;
        }
        return sides;
    }
    /// The popover's rectangle after a click on the icon at `place`; the next click closes it.
    QRect popoverAfterClick(const QPoint& place) {
        click(place);
        EXPECT_TRUE(program->comesToFront());
        const QRect area = program->popoverArea();
        click(place);
        EXPECT_TRUE(program->closes());
        return area;
    }

    std::optional<VirtualDesktop> desktop;
    std::optional<ScriptedTray> tray;
    std::optional<ProgramRun> program;
};

TEST_F(TrayOnTheBus, shows_the_icon_and_has_the_popover_where_it_is_clicked_also_after_restarts) {
    start({1280, 1024});
    EXPECT_THAT(pictures(), testing::IsSupersetOf({16, 22, 24, 32, 48})) << "what trays show";
    const QString toolTip = propertyOfItem(u"ToolTip"_s);
    EXPECT_TRUE(toolTip.contains(u", 'Tralio', ''")) << toolTip.toStdString();
    for (const QPoint& place : {QPoint(900, 1010), QPoint(400, 8)})
        EXPECT_TRUE(hangsFrom(popoverAfterClick(place), place));
    ASSERT_TRUE(program->openByHotKey());
    EXPECT_TRUE(hangsFrom(program->popoverArea(), {400, 8})) << "the hot key does not know the icon's place";

    for (int restart = 0; restart < 2; ++restart) {
        tray.reset();
        tray.emplace();
        EXPECT_TRUE(itemComes()) << restart;
    }
    EXPECT_TRUE(program->isRunning());
}

TEST_F(TrayOnTheBus, is_understood_on_a_screen_of_twice_the_resolution) {
    start({2560, 2048}, [this] { desktop->setVariable(u"QT_SCALE_FACTOR"_s, u"2"_s); });
    EXPECT_TRUE(hangsFrom(popoverAfterClick({1800, 2020}), {1800, 2020}, 2));
}

TEST_F(TrayOnTheBus, has_the_popover_on_the_monitor_of_the_click) {
    start({2560, 1024}, [this] {
        desktop->run(u"xrandr"_s, {u"--setmonitor"_s, u"left"_s, u"1280/340x1024/270+0+0"_s, u"screen"_s});
        desktop->run(u"xrandr"_s, {u"--setmonitor"_s, u"right"_s, u"1280/340x1024/270+1280+0"_s, u"none"_s});
    });
    for (const auto& [place, left] : {std::pair(1270, 744), std::pair(1290, 1286), std::pair(1300, 1286)})
        EXPECT_EQ(popoverAfterClick({place, 1010}).left(), left) << place;
}

/// Calls `ask` to open the menu, and clicks on "Mở Tralio", its third of four entries.
bool opensByMenu(const VirtualDesktop& desktop, const ProgramRun& program, const std::function<void()>& ask) {
    const auto windows = [&] { return desktop.xdotool(u"search --onlyvisible --class ."_s).split(u'\n'); };
    const QStringList before = windows();
    ask();
    QStringList menu;
    const bool isThere = waitUntil([&] {
        menu = windows();
        menu.removeIf([&](const QString& window) { return before.contains(window); });
        return !menu.isEmpty();
    });
    const QString geometry = desktop.xdotool(u"getwindowgeometry --shell "_s + menu.value(0));
    const int height = geometry.section(u"HEIGHT="_s, 1).section(u'\n', 0, 0).toInt();
    desktop.click(menu.value(0), {30, height * 6 / 10});
    return isThere && program.comesToFront();
}

TEST(TrayOfWindows, gets_the_icon_when_it_comes_late_and_again_after_a_restart) {
    VirtualDesktop desktop(VirtualDesktop::Tray::absent);
    ProgramRun program(desktop);
    ASSERT_TRUE(program.openByHotKey()) << "no tray at all";
    ASSERT_TRUE(program.closePopover());
    for (int start = 0; start < 2; ++start) {
        QProcess& tray = desktop.start(u"tint2"_s);
        ASSERT_TRUE(waitUntil([&] { return !program.trayIcon().isEmpty(); })) << "start " << start;
        ASSERT_TRUE(program.clickTrayIcon());
        ASSERT_TRUE(program.comesToFront());
        const QRect screen = desktop.screenshot().rect();
        EXPECT_TRUE(screen.contains(program.popoverArea()));
        EXPECT_GT(program.popoverArea().bottom(), screen.height() / 2) << "the tray is at the bottom";
        ASSERT_TRUE(program.clickTrayIcon());
        ASSERT_TRUE(program.closes());
        ASSERT_TRUE(opensByMenu(desktop, program, [&] { EXPECT_TRUE(program.clickTrayIcon(3)); }))
            << "our own menu";
        // By the keyboard: a click so soon after one that closed it would count as the same.
        ASSERT_TRUE(program.closePopover());
        tray.kill();
        ASSERT_TRUE(waitUntil([&] { return program.trayIcon().isEmpty(); }));
    }
}

/// The centre of the blue pixels in the upper `height` rows of the screen.
std::optional<QPoint> blueIn(const QImage& screen, int height) {
    QRect blue;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < screen.width(); ++x) {
            const QColor pixel = screen.pixelColor(x, y);
            if (pixel.blue() > 180 && pixel.red() < 90)
                blue |= QRect(x, y, 1, 1);
        }
    }
    return blue.isEmpty() ? std::nullopt : std::optional(blue.center());
}

TEST(TrayOfARealPanel, shows_the_icon_and_the_popover_hangs_from_it) {
    VirtualDesktop desktop(VirtualDesktop::Tray::absent);
    desktop.startPanel(u"systray"_s);
    ProgramRun program(desktop);
    constexpr int panelHeight = 32;
    std::optional<QPoint> icon;
    ASSERT_TRUE(waitUntil([&] {
        icon = blueIn(desktop.screenshot(), panelHeight);
        return icon.has_value();
    }));
    desktop.click(*icon);
    ASSERT_TRUE(program.comesToFront());
    const QRect area = program.popoverArea();
    EXPECT_GE(area.top(), panelHeight);
    EXPECT_LE(area.top(), panelHeight + 20);
    EXPECT_TRUE(area.left() <= icon->x() && icon->x() <= area.right());
    desktop.click(*icon);
    EXPECT_TRUE(program.closes());

    ASSERT_TRUE(opensByMenu(desktop, program, [&] {
        desktop.xdotool(u"mousemove %1 %2 click 3"_s.arg(icon->x()).arg(icon->y()));
    })) << "the menu that the panel draws";
}

}  // namespace
}  // namespace tralio
