#include <gmock/gmock.h>

#include "desktop/program_run.h"
#include "support/print_to.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

TEST(PopoverWindow, opens_without_a_tray_takes_the_keyboard_and_closes_on_escape_and_outside_clicks) {
    VirtualDesktop desktop(VirtualDesktop::Tray::absent);
    ProgramRun program(desktop);
    program.standIn().translatesTo(u"xong"_s);

    desktop.press(u"super+shift+d"_s);  // nothing is in front: nothing to translate, but the popover comes
    ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); }));
    desktop.type(u"hello"_s);
    desktop.press(u"Return"_s);
    ASSERT_TRUE(waitUntil([&] { return program.shownTranslation() == u"xong"_s; }));
    EXPECT_EQ(program.standIn().requests().last().userText(), u"hello"_s);

    desktop.press(u"Escape"_s);
    EXPECT_TRUE(waitUntil([&] { return !program.isPopoverShown(); }));

    desktop.start(u"xterm"_s);
    const QString terminal = desktop.bringToFront(u"xterm"_s);
    ASSERT_FALSE(terminal.isEmpty());
    desktop.press(u"super+shift+d"_s);
    ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); }));
    desktop.click(terminal, {20, 20}, 1);
    EXPECT_TRUE(waitUntil([&] { return !program.isPopoverShown(); }));
    EXPECT_TRUE(program.isRunning());
}

TEST(PopoverWindow, shows_what_went_wrong_when_the_model_does_not_answer) {
    VirtualDesktop desktop;
    ProgramRun program(desktop);
    program.standIn().refuseConnections();
    desktop.press(u"super+shift+d"_s);
    ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); }));
    desktop.type(u"hello"_s);
    desktop.press(u"Return"_s);
    EXPECT_TRUE(waitUntil([&] { return program.shows(u"Lỗi kết nối mạng: "_s); }));
}

}  // namespace
}  // namespace tralio
