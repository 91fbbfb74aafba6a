#include <csignal>
#include <unistd.h>

#include "desktop/fixtures.h"
#include "state/sqlite_key_value_store.h"
#include "support/process_limits.h"

namespace tralio {
namespace {

/// A user's way through the whole program.
struct ShellWalk : testing::Test {
    VirtualDesktop desktop;
    std::optional<ProgramRun> program;
};

TEST_F(ShellWalk, a_double_click_that_ends_the_walk_through_presses_nothing_that_lay_beneath) {
    program.emplace(desktop, ProgramRun::Stored{{u"hasCompletedOnboarding"_s, false}});
    ASSERT_TRUE(program->openByHotKey());
    ASSERT_TRUE(program->comes(u"Bỏ qua"_s));
    const QRect skip = program->areaOf(u"Bỏ qua"_s);
    const QPoint place(skip.right() - 5, skip.center().y());
    desktop.xdotool(u"mousemove %1 %2 click --repeat 2 --delay 80 1"_s.arg(place.x()).arg(place.y()));
    ASSERT_TRUE(program->comes(u"Dán & Tralio"_s));
    EXPECT_TRUE(program->areaOf(u"Thoát ứng dụng Tralio"_s).contains(place)) << "what is tested?";
    EXPECT_FALSE(waitUntil([&] { return !program->isRunning(); }, 1));
}

TEST_F(ShellWalk, accessibility_is_granted_by_the_button_of_the_settings_and_missed_when_it_is_taken_away) {
    desktop.setVariable(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);  // lets this test read the elements
    desktop.setAccessibility(false);
    program.emplace(desktop);
    ASSERT_TRUE(program->openByHotKey());
    ASSERT_TRUE(program->click(u"Chưa cấp quyền Trợ năng"_s));
    ASSERT_TRUE(program->click(u"Cần cấp quyền Trợ năng (Accessibility): Cấp quyền"_s));
    EXPECT_TRUE(program->comes(u"Quyền Trợ năng (Accessibility): Đã bật"_s));
    EXPECT_TRUE(program->goes(u"Chưa cấp quyền"_s));

    desktop.setAccessibility(false);
    EXPECT_TRUE(program->comes(u"Chưa cấp quyền Trợ năng"_s));
}

TEST_F(ShellWalk, opening_translates_what_was_newly_copied_once_and_no_password) {
    program.emplace(desktop);
    const auto openAndClose = [&] {
        ASSERT_TRUE(program->clickTrayIcon());
        ASSERT_TRUE(program->comesToFront());
        EXPECT_FALSE(waitUntil([&] { return program->standIn().requests().size() > 1; }, 1));
        ASSERT_TRUE(program->closePopover());
    };
    desktop.setClipboard(u"newly copied"_s);
    ASSERT_TRUE(program->clickTrayIcon());
    ASSERT_TRUE(program->isAsked(u"newly copied"_s));
    ASSERT_TRUE(program->closePopover());
    openAndClose();

    desktop.start(QStringLiteral(SELECTION_PROBE), {u"secret word"_s, u"--password"_s});
    ASSERT_TRUE(waitUntil([&] { return desktop.clipboard() == u"secret word"; }));
    openAndClose();

    desktop.setClipboard(u"copied later"_s);
    ASSERT_TRUE(program->clickTrayIcon());
    EXPECT_TRUE(program->isAsked(u"copied later"_s));
    EXPECT_EQ(program->standIn().requests().size(), 2);
}

TEST_F(ShellWalk, other_programs_hand_over_texts_a_second_start_opens_the_first_and_its_button_ends_it) {
    program.emplace(desktop);
    program->callOnBus(u"TranslateText"_s, {u"  handed over  "_s});
    EXPECT_TRUE(program->isAsked(u"handed over"_s));
    EXPECT_TRUE(dumpsNoCore(program->processId()));
    ASSERT_TRUE(program->closePopover());

    const QProcess& second = desktop.start(program->process().program());
    EXPECT_TRUE(waitUntil([&] { return second.state() == QProcess::NotRunning; }));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_TRUE(program->comesToFront());

    ASSERT_FALSE(program->trayIcon().isEmpty());
    ASSERT_TRUE(program->click(u"Thoát ứng dụng Tralio"_s));
    ASSERT_TRUE(waitUntil([&] { return !program->isRunning(); }));
    EXPECT_EQ(program->process().exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program->process().exitCode(), 0);
    EXPECT_TRUE(waitUntil([&] { return program->trayIcon().isEmpty(); }));
}

TEST_F(ShellWalk, a_store_that_fails_is_told_and_nobody_is_sent_anything_until_the_user_has_seen_that) {
    desktop.write(u".local/share/tralio/tralio.sqlite"_s, u"no database "_s.repeated(1000));
    StandInModel everyServer;  // as the proxy before all of them
    everyServer.replies(StandInReply::error(503, {}));
    desktop.setVariable(u"https_proxy"_s, u"http://127.0.0.1:%1"_s.arg(everyServer.port()));
    program.emplace(desktop, ProgramRun::Stored{{u"app_setting_base_url"_s, false}});
    const auto isSearchForUpdateOver = [&] {
        return everyServer.requests().size() == 1 && everyServer.openConnections() == 0;
    };
    ASSERT_TRUE(waitUntil(isSearchForUpdateOver));

    program->callOnBus(u"TranslateText"_s, {u"private"_s});
    EXPECT_TRUE(program->comes(u"Không đọc được cài đặt đã lưu"_s));
    EXPECT_FALSE(waitUntil([&] { return !isSearchForUpdateOver(); }, 1));

    ASSERT_TRUE(program->click(u"Đóng thông báo"_s));
    EXPECT_TRUE(program->goes(u"Không đọc được cài đặt đã lưu"_s));
    program->callOnBus(u"TranslateText"_s, {u"wanted"_s});
    EXPECT_TRUE(waitUntil([&] { return everyServer.requests().size() == 2; }));
    const QString store = desktop.home() + u"/.local/share/tralio"_s;
    EXPECT_EQ(SqliteKeyValueStore(store + u"/tralio.sqlite"_s).trouble(), std::nullopt)
        << "at the next start";

    ASSERT_TRUE(QDir(store).removeRecursively());
    writeFile(store, "in the way");
    ASSERT_TRUE(program->click(u"Giọng điệu"_s));
    desktop.press(u"Down"_s);
    desktop.press(u"Return"_s);
    EXPECT_TRUE(program->comes(u"Không lưu được cài đặt"_s));
}

struct Hung : OnDesktop {
    /// Expects that a fault did no lasting harm. Selects another text than before, so that an old one is
    /// recognised.
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
        // While it writes, which takes some milliseconds that cannot be observed from outside.
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
