#include "desktop/program_run.h"
#include "desktop/scripted_portal.h"
#include "desktop/virtual_desktop.h"
#include "support/testing.h"

namespace tralio {
namespace {

TEST(Appearance, grows_with_the_text_of_the_desktop_and_follows_its_colours_while_the_popover_is_open) {
    VirtualDesktop desktop;
    ScriptedPortal portal;
    portal.setTextScale(1.5);
    portal.setColorScheme(1);
    ProgramRun program(desktop);
    ASSERT_TRUE(program.openByHotKey());
    const QRect area = program.popoverArea();
    EXPECT_EQ(area.width(), 530 * 3 / 2);
    EXPECT_GT(area.height(), 585) << "as far as the screen lets it";

    const auto groundLightness = [&] {  // where no part stands
        return desktop.screenshot().pixelColor(area.topLeft() + QPoint(30, 90)).lightness();
    };
    EXPECT_TRUE(waitUntil([&] { return groundLightness() < 60; }));
    portal.setColorScheme(2);
    EXPECT_TRUE(waitUntil([&] { return groundLightness() > 200; }));
}

}  // namespace
}  // namespace tralio
