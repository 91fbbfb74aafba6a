#include <gmock/gmock.h>

#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "platform/linux/x11/x11_connection.h"
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
    program.callOnBus(u"Open"_s);  // while it is open
    desktop.click(terminal, {20, 20}, 1);
    EXPECT_TRUE(waitUntil([&] { return !program.isPopoverShown(); }));

    program.callOnBus(u"Open"_s);
    ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); }));
    program.callOnBus(u"Open"_s);
    desktop.run(u"xdotool"_s, {u"windowactivate"_s, terminal});
    EXPECT_TRUE(waitUntil([&] { return !program.isPopoverShown(); })) << "left by the keyboard";
    EXPECT_TRUE(program.isRunning());
}

TEST(PopoverWindow, opens_at_the_tray_icon_and_closes_at_the_next_click) {
    VirtualDesktop desktop;
    ProgramRun program(desktop);
    ASSERT_TRUE(program.clickTrayIcon());
    ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); }));
    const QImage screen = desktop.screenshot(desktop.home() + u"/screen.png"_s);
    const QRect area = program.popoverArea();
    EXPECT_TRUE(screen.rect().contains(area));
    EXPECT_GT(area.bottom(), screen.height() / 2) << "the tray is at the bottom of the screen";
    ASSERT_TRUE(program.clickTrayIcon());
    EXPECT_TRUE(waitUntil([&] { return !program.isPopoverShown(); }));
}

TEST(PopoverWindow, stays_while_another_program_takes_the_keyboard_for_a_moment) {
    VirtualDesktop desktop;
    ProgramRun program(desktop);
    desktop.press(u"super+shift+d"_s);
    ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); }));

    qputenv("DISPLAY", desktop.environment().value(u"DISPLAY"_s).toUtf8());
    const auto other = X11Connection::open();
    const XcbPtr<xcb_grab_keyboard_reply_t> grab{xcb_grab_keyboard_reply(other->xcb(),
        xcb_grab_keyboard(
            other->xcb(), 1, other->root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
        nullptr)};
    ASSERT_TRUE(grab);
    EXPECT_FALSE(waitUntil([&] { return !program.isPopoverShown(); }, 1)) << "closed by the grab alone";
    xcb_ungrab_keyboard(other->xcb(), XCB_CURRENT_TIME);
    other->sync();

    desktop.start(u"xterm"_s);
    ASSERT_FALSE(desktop.bringToFront(u"xterm"_s).isEmpty());
    EXPECT_TRUE(waitUntil([&] { return !program.isPopoverShown(); }));
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
