#include "desktop/fixtures.h"
#include "support/core_limit.h"

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
    ASSERT_TRUE(program->click(u"Bỏ qua"_s, 2));
    ASSERT_TRUE(program->comes(u"Dán & Tralio"_s));
    EXPECT_FALSE(waitUntil([&] { return !program->isRunning(); }, 1)) << "the button that quits lay there";
}

TEST_F(ShellWalk, accessibility_is_granted_by_the_button_of_the_settings_and_missed_when_it_is_taken_away) {
    desktop.setVariable(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);  // for this test's own eyes
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
    EXPECT_TRUE(program->comesToFront());
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
    EXPECT_TRUE(program->trayIcon().isEmpty());
}

}  // namespace
}  // namespace tralio
