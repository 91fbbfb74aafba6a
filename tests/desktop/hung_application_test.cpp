#include <QElapsedTimer>

#include <csignal>
#include <unistd.h>

#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "support/testing.h"

namespace tralio {
namespace {

TEST(HungApplication, does_not_keep_the_hot_key_from_ending_in_time) {
    VirtualDesktop desktop;
    ProgramRun program(desktop);
    QProcess& editor = desktop.start(
        u"mousepad"_s, {u"--disable-server"_s, desktop.write(u"a.txt"_s, u"một câu để chọn"_s)});
    ASSERT_FALSE(desktop.bringToFront(u"Mousepad"_s).isEmpty());
    desktop.press(u"ctrl+a"_s);
    ASSERT_EQ(program.translateSelection(), u"một câu để chọn"_s);
    ASSERT_TRUE(program.closePopover());
    ASSERT_FALSE(desktop.bringToFront(u"Mousepad"_s).isEmpty());

    ASSERT_EQ(kill(static_cast<pid_t>(editor.processId()), SIGSTOP), 0);
    QElapsedTimer sinceThePress;
    sinceThePress.start();
    EXPECT_TRUE(program.openByHotKey());
    EXPECT_LT(sinceThePress.elapsed(), 1500);
    kill(static_cast<pid_t>(editor.processId()), SIGCONT);

    // And it has done no lasting harm. What is selected now is not what was selected before.
    ASSERT_TRUE(program.closePopover());
    ASSERT_FALSE(desktop.bringToFront(u"Mousepad"_s).isEmpty());
    desktop.press(u"ctrl+End"_s);
    desktop.press(u"ctrl+shift+Left"_s);
    EXPECT_EQ(program.translateSelection(), u"chọn"_s);
}

TEST(HungDisplay, is_waited_for_and_used_again) {
    VirtualDesktop desktop;
    ProgramRun program(desktop);
    ASSERT_FALSE(desktop.selectInEditor(u"một câu để chọn"_s).isEmpty());
    ASSERT_EQ(program.translateSelection(), u"một câu để chọn"_s);
    ASSERT_TRUE(program.closePopover());
    const auto server = static_cast<pid_t>(
        desktop.run(u"pgrep"_s, {u"-P"_s, QString::number(getpid()), u"-x"_s, u"Xvfb"_s}).toInt());
    ASSERT_GT(server, 0);

    ASSERT_EQ(kill(server, SIGSTOP), 0);
    desktop.start(u"gdbus"_s,
        {u"call"_s, u"--session"_s, u"--dest"_s, u"org.tralio.Tralio"_s, u"--object-path"_s,
            u"/org/tralio/Tralio"_s, u"--method"_s, u"org.tralio.Tralio.TranslateText"_s,
            u"while nothing can be drawn"_s});
    EXPECT_FALSE(waitUntil([&] { return !program.isRunning(); }, 5));
    kill(server, SIGCONT);

    // And it has done no lasting harm.
    EXPECT_TRUE(waitUntil(
        [&] { return program.standIn().requests().last().userText() == u"while nothing can be drawn"; }));
    ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); }));
    ASSERT_TRUE(program.closePopover());
    ASSERT_FALSE(desktop.bringToFront(u"Mousepad"_s).isEmpty());
    desktop.press(u"ctrl+End"_s);
    desktop.press(u"ctrl+shift+Left"_s);
    EXPECT_EQ(program.translateSelection(), u"chọn"_s);
}

TEST(HungProgram, is_told_of_by_a_second_start_which_ends_when_it_was_read) {
    VirtualDesktop desktop;
    ProgramRun program(desktop);
    const auto first = static_cast<pid_t>(program.processId());
    ASSERT_EQ(kill(first, SIGSTOP), 0);
    const QProcess& second = desktop.start(program.process().program());
    const QStringList itsWindows{
        u"search"_s, u"--onlyvisible"_s, u"--pid"_s, QString::number(second.processId())};
    ASSERT_TRUE(waitUntil([&] { return !desktop.run(u"xdotool"_s, itsWindows).isEmpty(); }));
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

}  // namespace
}  // namespace tralio
