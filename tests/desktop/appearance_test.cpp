#include "desktop/fixtures.h"
#include "platform/scripted_settings_portal.h"

namespace tralio {
namespace {

TEST(Appearance, grows_with_the_text_of_the_desktop_and_follows_its_colours_while_the_popover_is_open) {
    VirtualDesktop desktop;
    ScriptedSettingsPortal portal;
    desktop.run(u"xsetroot"_s, {u"-solid"_s, u"#808080"_s});
    portal.settings[gnomeSettings][u"text-scaling-factor"_s] = 1.5;
    portal.settings[appearanceSettings][u"color-scheme"_s] = 1U;
    ProgramRun program(desktop);
    ASSERT_TRUE(program.openByHotKey());
    const QRect area = program.popoverArea();
    EXPECT_EQ(area.width(), 530 * 3 / 2);
    EXPECT_GT(area.height(), 585) << "as far as the screen lets it";
    const auto groundLightness = [&] {  // at a place without a widget
        return desktop.screenshot().pixelColor(area.topLeft() + QPoint(30, 90)).lightness();
    };
    EXPECT_TRUE(waitUntil([&] { return groundLightness() < 60; }));
    portal.change(appearanceSettings, u"color-scheme"_s, 2U);
    EXPECT_TRUE(waitUntil([&] { return groundLightness() > 200; }));
}

}  // namespace
}  // namespace tralio
