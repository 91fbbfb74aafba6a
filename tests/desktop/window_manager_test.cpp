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
    const QString terminal = desktop.startTerminal(u"cat"_s);

    const std::pair<const char*, std::function<void()>> ways[] = {
        // First, since a click on the icon just after one elsewhere means the popover that the latter closed.
        {"tray", [&] { EXPECT_TRUE(program.clickTrayIcon()); }},
        {"hot key", [&] { desktop.press(u"super+shift+d"_s); }},
        {"session bus", [&] { program.callOnBus(u"Open"_s); }}};
    for (const auto& [name, open] : ways) {
        SCOPED_TRACE(name);
        desktop.click(terminal, {20, 20});
        desktop.type(u"typing "_s);
        open();
        ASSERT_TRUE(program.comesToFront());
        const QString typed = u"typed after "_s + QLatin1String(name);
        desktop.press(u"ctrl+a"_s);
        desktop.type(typed);
        desktop.press(u"Return"_s);
        EXPECT_TRUE(program.isAsked(typed));
        desktop.click(terminal, {20, 20});
        ASSERT_TRUE(program.closes());
    }
}

TEST(WindowManager, with_a_compositor_may_fade_the_popover_but_closing_and_opening_count_at_once) {
    VirtualDesktop desktop;
    desktop.startCompositor();
    ProgramRun program(desktop);
    program.standIn().translatesTo(u"xong"_s);
    for (const QString& typed : {u"one"_s, u"two"_s, u"three"_s}) {
        // Again while the former one still fades out.
        ASSERT_TRUE(program.openByHotKey());
        desktop.press(u"Escape"_s);
        program.callOnBus(u"Open"_s);
        ASSERT_TRUE(program.comesToFront());
        desktop.press(u"ctrl+a"_s);
        desktop.type(typed);
        desktop.press(u"Return"_s);
        ASSERT_TRUE(program.isAsked(typed));
        ASSERT_TRUE(program.closePopover());
    }
    EXPECT_EQ(program.standIn().requests().size(), 3);
}

TEST(LowScreen, has_the_whole_popover_with_its_footer) {
    VirtualDesktop desktop(VirtualDesktop::Tray::present, {1024, 576});
    ProgramRun program(desktop);
    program.standIn().refuseConnections();
    ASSERT_TRUE(program.openByHotKey());
    EXPECT_TRUE(desktop.screenshot().rect().contains(program.popoverArea()));
    EXPECT_TRUE(program.click(u"Cài đặt"_s));
    EXPECT_TRUE(program.click(u"System Prompt: Mặc định"_s));
    EXPECT_TRUE(program.click(u"Bôi đen: "_s)) << "in the footer";
}

}  // namespace
}  // namespace tralio
