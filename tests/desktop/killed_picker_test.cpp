#include <QDir>

#include <csignal>

#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "support/testing.h"

namespace tralio {
namespace {

TEST(KilledPicker, costs_that_capture_and_nothing_else_whenever_it_dies) {
    VirtualDesktop desktop;
    ProgramRun program(desktop);
    const auto picker = [&] {
        return desktop
            .run(u"pgrep"_s, {u"-P"_s, QString::number(program.processId()), u"-x"_s, u"tralio-snip"_s})
            .toInt();
    };
    const auto mouse = [&](const QString& commands) { desktop.run(u"xdotool"_s, commands.split(u' ')); };
    const auto isOnScreen = [&] { return desktop.isVisible(u"tralio-snip"_s); };
    const auto filesLeft = [&] {
        QStringList left;
        for (const char* folder : {"/tmp", "/runtime"})
            left += QDir(desktop.home() + QLatin1StringView(folder)).entryList({u"tralio_snip_*"_s});
        return left;
    };

    struct Moment {
        const char* name;
        std::function<void()> reach;
    };
    std::vector<Moment> moments{{"at its start", [] {}},
        {"on the screen", [&] { EXPECT_TRUE(waitUntil(isOnScreen)); }},
        {"while the user draws", [&] {
             EXPECT_TRUE(waitUntil(isOnScreen));
             mouse(u"mousemove 100 100 mousedown 1 mousemove 200 200 mousemove 300 250"_s);
         }}};
    // Its end takes some milliseconds, which nobody tells apart.
    for (int times = 0; times < 2; ++times)
        moments.push_back({"while it writes", [&] {
                               EXPECT_TRUE(waitUntil(isOnScreen));
                               mouse(u"mousemove 100 100 mousedown 1 mousemove 400 400 mousemove 900 900"_s);
                               mouse(u"mouseup 1"_s);
                           }});
    for (const Moment& moment : moments) {
        SCOPED_TRACE(moment.name);
        program.callOnBus(u"CaptureScreen"_s);
        ASSERT_TRUE(waitUntil([&] { return picker() > 0; }));
        const int process = picker();
        moment.reach();
        ::kill(process, SIGKILL);
        mouse(u"mouseup 1"_s);
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
