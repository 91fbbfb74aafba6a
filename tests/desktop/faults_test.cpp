#include <csignal>
#include <unistd.h>

#include "desktop/fixtures.h"

namespace tralio {
namespace {

struct Hung : OnDesktop {
    /// It has done no lasting harm. What is selected now is not what was selected before.
    void expectNoHarm() {
        ASSERT_TRUE(program.closePopover());
        ASSERT_FALSE(desktop.bringToFront(u"Mousepad"_s).isEmpty());
        desktop.press(u"ctrl+End"_s);
        desktop.press(u"ctrl+shift+Left"_s);
        EXPECT_EQ(program.translateSelection(), u"chọn"_s);
    }
};

TEST_F(Hung, application_does_not_keep_the_hot_key_from_ending_and_a_display_is_waited_for) {
    desktop.selectInEditor(u"một câu để chọn"_s);
    ASSERT_EQ(program.translateSelection(), u"một câu để chọn"_s);
    ASSERT_TRUE(program.closePopover());
    ASSERT_FALSE(desktop.bringToFront(u"Mousepad"_s).isEmpty());
    const pid_t editor = desktop.childOf(getpid(), u"mousepad"_s);
    ASSERT_GT(editor, 0);
    ASSERT_EQ(kill(editor, SIGSTOP), 0);
    const Stopwatch sinceThePress;
    EXPECT_TRUE(program.openByHotKey());
    EXPECT_LT(sinceThePress.elapsed(), 1500);
    kill(editor, SIGCONT);
    expectNoHarm();
    ASSERT_TRUE(program.closePopover());

    const pid_t server = desktop.childOf(getpid(), u"Xvfb"_s);
    ASSERT_GT(server, 0);
    ASSERT_EQ(kill(server, SIGSTOP), 0);
    desktop.start(u"gdbus"_s,
        {u"call"_s, u"--session"_s, u"--dest"_s, u"org.tralio.Tralio"_s, u"--object-path"_s,
            u"/org/tralio/Tralio"_s, u"--method"_s, u"org.tralio.Tralio.TranslateText"_s,
            u"while nothing can be drawn"_s});
    EXPECT_FALSE(waitUntil([&] { return !program.isRunning(); }, 5));
    kill(server, SIGCONT);
    EXPECT_TRUE(program.isAsked(u"while nothing can be drawn"_s));
    ASSERT_TRUE(program.comesToFront());
    expectNoHarm();
}

TEST_F(Hung, program_is_told_of_by_a_second_start_which_ends_when_it_was_read) {
    const auto first = static_cast<pid_t>(program.processId());
    ASSERT_EQ(kill(first, SIGSTOP), 0);
    const QProcess& second = desktop.start(program.process().program());
    const QString itsWindows = u"search --onlyvisible --pid %1"_s.arg(second.processId());
    ASSERT_TRUE(waitUntil([&] { return !desktop.xdotool(itsWindows).isEmpty(); }));
    EXPECT_EQ(second.state(), QProcess::Running);
    ASSERT_TRUE(waitUntil([&] {
        desktop.press(u"Return"_s);
        return second.state() == QProcess::NotRunning;
    }));
    EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(second.exitCode(), EXIT_FAILURE);

    kill(first, SIGCONT);
    EXPECT_TRUE(waitUntil([&] { return program.isPopoverShown(); })) << "the second had asked for it";
    EXPECT_TRUE(program.isRunning());
}

using KilledPicker = OnDesktop;

TEST_F(KilledPicker, costs_that_capture_and_nothing_else_whenever_it_dies) {
    const auto picker = [&] { return desktop.childOf(program.processId(), u"tralio-snip"_s); };
    const auto isOnScreen = [&] { return desktop.isVisible(u"tralio-snip"_s); };
    const auto draw = [&] { desktop.drag({100, 100}, {900, 900}); };
    const std::function<void()> moments[] = {
        [] {},  // at its start
        [] {},
        [&] { desktop.xdotool(u"mousemove 100 100 mousedown 1 mousemove 200 200 mousemove 300 250"_s); },
        // While it writes, which takes some milliseconds that nobody tells apart.
        draw,
        draw,
    };
    for (const auto& reachMoment : moments) {
        SCOPED_TRACE(&reachMoment - moments);
        program.callOnBus(u"CaptureScreen"_s);
        ASSERT_TRUE(waitUntil([&] { return picker() > 0; }));
        const int process = picker();
        if (&reachMoment != moments)
            EXPECT_TRUE(waitUntil(isOnScreen));
        reachMoment();
        ::kill(process, SIGKILL);
        desktop.xdotool(u"mouseup 1"_s);
        ASSERT_TRUE(waitUntil([&] { return picker() == 0 && program.isPopoverShown(); }));
        EXPECT_TRUE(waitUntil([&] { return desktop.capturesLeft().isEmpty(); }));
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
