#include "desktop/program_run.h"
#include "desktop/scripted_portal.h"
#include "desktop/virtual_desktop.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// The lightness of the popover's ground, at a place where no part stands.
int groundLightness(const VirtualDesktop& desktop, const ProgramRun& program) {
    const QImage screen = desktop.screenshot(desktop.home() + u"/screen.png"_s);
    return screen.pixelColor(program.popoverArea().topLeft() + QPoint(20, 60)).lightness();
}

TEST(Appearance, follows_the_desktop_while_the_popover_is_open) {
    VirtualDesktop desktop;
    ScriptedPortal portal;
    portal.setColorScheme(1);
    ProgramRun program(desktop);
    ASSERT_TRUE(program.openByHotKey());
    EXPECT_TRUE(waitUntil([&] { return groundLightness(desktop, program) < 60; }));

    portal.setColorScheme(2);
    EXPECT_TRUE(waitUntil([&] { return groundLightness(desktop, program) > 200; }));
}

TEST(Appearance, the_window_grows_with_the_text_of_the_desktop_as_far_as_the_screen_lets_it) {
    VirtualDesktop desktop;
    ScriptedPortal portal;
    portal.setTextScale(1.5);
    ProgramRun program(desktop);
    ASSERT_TRUE(program.openByHotKey());
    EXPECT_EQ(program.popoverArea().width(), 530 * 3 / 2);
    EXPECT_GT(program.popoverArea().height(), 585);
}

}  // namespace
}  // namespace tralio
