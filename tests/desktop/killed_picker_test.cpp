#include <QDir>

#include <csignal>

#include "desktop/program_fixture.h"

namespace tralio {
namespace {

using KilledPicker = OnDesktop;

TEST_F(KilledPicker, costs_that_capture_and_nothing_else_whenever_it_dies) {
    const auto picker = [&] {
        return desktop
            .run(u"pgrep"_s, {u"-P"_s, QString::number(program.processId()), u"-x"_s, u"tralio-snip"_s})
            .toInt();
    };
    const auto isOnScreen = [&] { return desktop.isVisible(u"tralio-snip"_s); };
    const auto filesLeft = [&] {
        QStringList left;
        for (const char* folder : {"/tmp", "/runtime"})
            left += QDir(desktop.home() + QLatin1StringView(folder)).entryList({u"tralio_snip_*"_s});
        return left;
    };

    const auto draw = [&] {
        EXPECT_TRUE(waitUntil(isOnScreen));
        desktop.drag({100, 100}, {900, 900});
    };
    const std::function<void()> moments[] = {
        [] {},  // at its start
        [&] { EXPECT_TRUE(waitUntil(isOnScreen)); },
        [&] {
            EXPECT_TRUE(waitUntil(isOnScreen));
            desktop.xdotool(u"mousemove 100 100 mousedown 1 mousemove 200 200 mousemove 300 250"_s);
        },
        // While it writes, which takes some milliseconds that nobody tells apart.
        draw,
        draw,
    };
    for (const auto& reachMoment : moments) {
        SCOPED_TRACE(&reachMoment - moments);
        program.callOnBus(u"CaptureScreen"_s);
        ASSERT_TRUE(waitUntil([&] { return picker() > 0; }));
        const int process = picker();
        reachMoment();
        ::kill(process, SIGKILL);
        desktop.xdotool(u"mouseup 1"_s);
        ASSERT_TRUE(waitUntil([&] { return picker() == 0 && program.isPopoverShown(); }));
        EXPECT_TRUE(waitUntil([&] { return filesLeft().isEmpty(); })) << filesLeft().join(u' ').toStdString();
        ASSERT_TRUE(program.closePopover());
    }

    desktop.press(u"super+shift+s"_s);
    ASSERT_TRUE(waitUntil(isOnScreen)) << "keyboard and pointer are free again";
    ASSERT_TRUE(waitUntil([&] {
        desktop.press(u"Escape"_s);
        return picker() == 0;
    }));
    EXPECT_TRUE(waitUntil([&] { return program.isPopoverShown(); }));
    EXPECT_TRUE(program.standIn().requests().isEmpty());
    EXPECT_TRUE(program.isRunning());
}

}  // namespace
}  // namespace tralio
