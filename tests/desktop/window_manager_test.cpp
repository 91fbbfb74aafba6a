#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// New windows stay behind the one that the user works in.
const auto preventsStealing =
    uR"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfwm4" version="1.0">
  <property name="general" type="empty">
    <property name="prevent_focus_stealing" type="bool" value="true"/>
    <property name="focus_new" type="bool" value="false"/>
  </property>
</channel>
)"_s;

TEST(WindowManager, that_prevents_the_stealing_of_the_focus_gives_it_to_the_popover_whatever_opens_it) {
    VirtualDesktop desktop;
    desktop.write(u".config/xfce4/xfconf/xfce-perchannel-xml/xfwm4.xml"_s, preventsStealing);
    desktop.replaceWindowManager(u"xfwm4"_s, {u"--replace"_s, u"--sm-client-disable"_s});
    ProgramRun program(desktop);
    program.standIn().translatesTo(u"xong"_s);
    desktop.start(u"xterm"_s, {u"-geometry"_s, u"80x10+0+0"_s});
    const QString terminal = desktop.bringToFront(u"xterm"_s);
    ASSERT_FALSE(terminal.isEmpty());

    const std::pair<const char*, std::function<void()>> ways[] = {
        // First, since a click on the icon just after one elsewhere means the popover that the latter closed.
        {"tray", [&] { EXPECT_TRUE(program.clickTrayIcon()); }},
        {"hot key", [&] { desktop.press(u"super+shift+d"_s); }},
        {"session bus", [&] { program.callOnBus(u"Open"_s); }}};
    for (const auto& [name, open] : ways) {
        desktop.click(terminal, {20, 20}, 1);
        desktop.type(u"typing "_s);
        open();
        ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); })) << name;
        const QString typed = u"typed after "_s + QLatin1String(name);
        desktop.press(u"ctrl+a"_s);
        desktop.type(typed);
        desktop.press(u"Return"_s);
        EXPECT_TRUE(waitUntil([&] {
            const auto& requests = program.standIn().requests();
            return !requests.isEmpty() && requests.last().userText() == typed;
        })) << name;
        desktop.click(terminal, {20, 20}, 1);
        ASSERT_TRUE(waitUntil([&] { return !program.isPopoverShown(); })) << name;
    }
}

TEST(WindowManager, with_a_compositor_may_fade_the_popover_but_closing_and_opening_count_at_once) {
    VirtualDesktop desktop;
    desktop.startCompositor();
    ProgramRun program(desktop);
    program.standIn().translatesTo(u"xong"_s);
    for (int opening = 0; opening < 3; ++opening) {
        // Again while the former one still fades out.
        ASSERT_TRUE(program.openByHotKey());
        desktop.press(u"Escape"_s);
        program.callOnBus(u"Open"_s);
        ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); }));
        desktop.press(u"ctrl+a"_s);
        desktop.type(u"hello"_s);
        desktop.press(u"Return"_s);
        ASSERT_TRUE(waitUntil([&] { return program.standIn().requests().size() == opening + 1; }));
        EXPECT_EQ(program.standIn().requests().last().userText(), u"hello"_s);
        ASSERT_TRUE(program.closePopover());
    }
}

TEST(LowScreen, has_the_whole_popover_with_its_footer) {
    VirtualDesktop desktop(VirtualDesktop::Tray::present, {1024, 576});
    ProgramRun program(desktop);
    program.standIn().refuseConnections();
    ASSERT_TRUE(program.openByHotKey());
    const QImage screen = desktop.screenshot(desktop.home() + u"/screen.png"_s);
    EXPECT_TRUE(screen.rect().contains(program.popoverArea()));
    EXPECT_TRUE(program.click(u"Cài đặt"_s));
    EXPECT_TRUE(program.click(u"System Prompt: Mặc định"_s));
    EXPECT_TRUE(program.click(u"Bôi đen: "_s)) << "in the footer";
}

}  // namespace
}  // namespace tralio
