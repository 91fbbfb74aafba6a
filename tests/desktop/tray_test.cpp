#include <QRegularExpression>
#include <QSet>

#include <cmath>

#include "desktop/program_run.h"
#include "desktop/scripted_tray.h"
#include "desktop/virtual_desktop.h"
#include "support/testing.h"

namespace tralio {
namespace {

using testing::AllOf;
using testing::Each;
using testing::Gt;

/// Whether the popover hangs from `place`, in pixels of the screen, above or below it.
testing::AssertionResult hangsFrom(const QRect& popover, const QPoint& place, int ratio) {
    const int nearest = std::min(std::abs(popover.top() - place.y()), std::abs(popover.bottom() - place.y()));
    if (std::abs(popover.center().x() - place.x()) <= 2 * ratio && nearest <= 30 * ratio)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "it is at " << testing::PrintToString(popover.x()) << ", "
                                       << popover.y() << ", " << popover.width() << " x " << popover.height();
}

TEST(TrayOnTheBus, shows_the_icon_and_opens_and_closes_the_popover_where_it_is_clicked) {
    VirtualDesktop desktop(VirtualDesktop::Tray::absent);
    ScriptedTray tray;
    tray.appear();
    ProgramRun program(desktop);
    ASSERT_TRUE(waitUntil([&] { return !tray.item().isEmpty(); }));
    EXPECT_THAT(tray.pictures(), testing::IsSupersetOf({16, 22, 24, 32, 48})) << "what trays show";
    EXPECT_EQ(tray.toolTip(), u"Tralio"_s);

    for (const QPoint& place : {QPoint(900, 1010), QPoint(400, 8)}) {
        tray.click(place);
        ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); }));
        EXPECT_TRUE(hangsFrom(program.popoverArea(), place, 1));
        tray.click(place);
        ASSERT_TRUE(waitUntil([&] { return !program.isPopoverShown(); }));
    }
    ASSERT_TRUE(program.openByHotKey());
    EXPECT_TRUE(hangsFrom(program.popoverArea(), {400, 8}, 1))
        << "the hot key does not know the icon's place";
}

TEST(TrayOnTheBus, is_understood_on_a_screen_of_twice_the_resolution) {
    VirtualDesktop desktop(VirtualDesktop::Tray::absent, {2560, 2048});
    desktop.setVariable(u"QT_SCALE_FACTOR"_s, u"2"_s);
    ScriptedTray tray;
    tray.appear();
    ProgramRun program(desktop);
    ASSERT_TRUE(waitUntil([&] { return !tray.item().isEmpty(); }));
    tray.click({1800, 2020});
    ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); }));
    EXPECT_TRUE(hangsFrom(program.popoverArea(), {1800, 2020}, 2));
}

TEST(TrayOnTheBus, has_the_popover_on_the_monitor_of_the_click) {
    VirtualDesktop desktop(VirtualDesktop::Tray::absent, {2560, 1024});
    const auto addMonitor = [&](const QString& name, const QString& geometry, const QString& output) {
        desktop.run(u"xrandr"_s, {u"--setmonitor"_s, name, geometry, output});
    };
    addMonitor(u"left"_s, u"1280/340x1024/270+0+0"_s, u"screen"_s);
    addMonitor(u"right"_s, u"1280/340x1024/270+1280+0"_s, u"none"_s);
    ScriptedTray tray;
    tray.appear();
    ProgramRun program(desktop);
    ASSERT_TRUE(waitUntil([&] { return !tray.item().isEmpty(); }));
    for (const auto& [place, left] : {std::pair(1270, 744), std::pair(1290, 1286), std::pair(1300, 1286)}) {
        tray.click({place, 1010});
        ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); }));
        EXPECT_EQ(program.popoverArea().left(), left) << place;
        tray.click({place, 1010});
        ASSERT_TRUE(waitUntil([&] { return !program.isPopoverShown(); }));
    }
}

TEST(TrayOnTheBus, gets_the_icon_again_after_a_restart_and_when_it_comes_late) {
    VirtualDesktop desktop(VirtualDesktop::Tray::absent);
    ProgramRun program(desktop);
    ASSERT_TRUE(program.openByHotKey()) << "no tray at all";
    ScriptedTray tray;
    for (int start = 0; start < 3; ++start) {
        tray.appear();
        EXPECT_TRUE(waitUntil([&] { return !tray.item().isEmpty(); })) << "start " << start;
        tray.vanish();
    }
    EXPECT_TRUE(program.isRunning());
}

/// Clicks on "Mở Tralio", the third of four entries, in the menu for which `ask` clicks.
bool opensByMenu(VirtualDesktop& desktop, const ProgramRun& program, const std::function<void()>& ask) {
    const auto windows = [&] {
        const QString found =
            desktop.run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--class"_s, u"."_s});
        const QStringList ids = found.split(u'\n');
        return QSet<QString>(ids.begin(), ids.end());
    };
    const QSet<QString> before = windows();
    ask();
    QSet<QString> menu;
    if (!waitUntil([&] { return !(menu = windows() - before).isEmpty(); }))
        return false;
    const QString id = *menu.begin();
    const QString geometry = desktop.run(u"xdotool"_s, {u"getwindowgeometry"_s, u"--shell"_s, id});
    const int height = QRegularExpression(u"HEIGHT=(\\d+)"_s).match(geometry).captured(1).toInt();
    desktop.run(u"xdotool"_s,
        {u"mousemove"_s, u"--window"_s, id, u"30"_s, QString::number(height * 6 / 10), u"click"_s, u"1"_s});
    return waitUntil([&] { return program.isPopoverInFront(); });
}

TEST(TrayOfWindows, gets_the_icon_when_it_comes_late_and_again_after_a_restart) {
    VirtualDesktop desktop(VirtualDesktop::Tray::absent);
    ProgramRun program(desktop);
    for (int start = 0; start < 2; ++start) {
        QProcess& tray = desktop.start(u"tint2"_s);
        ASSERT_TRUE(waitUntil([&] { return !program.trayIcon().isEmpty(); })) << "start " << start;
        ASSERT_TRUE(program.clickTrayIcon());
        ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); }));
        const QRect screen = desktop.screenshot(desktop.home() + u"/screen.png"_s).rect();
        EXPECT_TRUE(screen.contains(program.popoverArea()));
        EXPECT_GT(program.popoverArea().bottom(), screen.height() / 2) << "the tray is at the bottom";
        ASSERT_TRUE(program.clickTrayIcon());
        ASSERT_TRUE(waitUntil([&] { return !program.isPopoverShown(); }));
        ASSERT_TRUE(opensByMenu(desktop, program, [&] { EXPECT_TRUE(program.clickTrayIcon(3)); }))
            << "our own menu";
        ASSERT_TRUE(program.clickTrayIcon());
        ASSERT_TRUE(waitUntil([&] { return !program.isPopoverShown(); }));
        tray.kill();
        ASSERT_TRUE(waitUntil([&] { return program.trayIcon().isEmpty(); }));
    }
}

/// The middle of what is blue in the upper `height` rows of the screen.
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

TEST(TrayOnTheBus, of_a_real_panel_shows_the_icon_and_the_popover_hangs_from_it) {
    VirtualDesktop desktop(VirtualDesktop::Tray::absent);
    desktop.startPanel(u"systray"_s);
    ProgramRun program(desktop);
    constexpr int panelHeight = 32;
    std::optional<QPoint> icon;
    ASSERT_TRUE(waitUntil([&] {
        icon = blueIn(desktop.screenshot(desktop.home() + u"/screen.png"_s), panelHeight);
        return icon.has_value();
    }));
    const auto click = [&](const QString& button = u"1"_s) {
        desktop.run(u"xdotool"_s,
            {u"mousemove"_s, QString::number(icon->x()), QString::number(icon->y()), u"click"_s, button});
    };
    click();
    ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); }));
    const QRect area = program.popoverArea();
    EXPECT_GE(area.top(), panelHeight);
    EXPECT_LE(area.top(), panelHeight + 20);
    EXPECT_TRUE(area.left() <= icon->x() && icon->x() <= area.right());
    click();
    EXPECT_TRUE(waitUntil([&] { return !program.isPopoverShown(); }));

    ASSERT_TRUE(opensByMenu(desktop, program, [&] { click(u"3"_s); })) << "the menu that the panel draws";
}

}  // namespace
}  // namespace tralio
