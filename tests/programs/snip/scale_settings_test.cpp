#include "programs/snip/scale_settings.h"

#include "support/testing.h"

namespace tralio {
namespace {

constexpr const char* variables[] = {
    "QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI", "GDK_SCALE"};

void clearEnvironment() {
    for (const char* name : variables)
        qunsetenv(name);
}

TEST(ScaleSettings, follow_the_environment_and_the_desktops_resolution) {
    struct Case {
        std::vector<std::pair<const char*, const char*>> environment;
        QString resources;
        double first, second;
    };
    const QString atTwo = u"Xcursor.size:\t24\nXft.dpi:\t192\nXft.antialias:\t1\n"_s;
    const Case cases[] = {
        {{}, {}, 1, 1},
        {{}, atTwo, 2, 2},
        {{{"QT_SCALE_FACTOR", "2"}}, u"Xft.dpi: 144"_s, 3, 3},
        {{{"GDK_SCALE", "2"}}, {}, 2, 2},
        {{{"GDK_SCALE", "2"}}, atTwo, 2, 2},  // the desktop's resolution has it already
        {{{"QT_FONT_DPI", "120"}}, atTwo, 1.25, 1.25},
        {{{"QT_SCREEN_SCALE_FACTORS", "1.5;2"}}, {}, 1.5, 2},
        {{{"QT_SCREEN_SCALE_FACTORS", "HDMI-1=2;DP-1=1.25"}}, atTwo, 1.25, 2},
        {{{"QT_SCREEN_SCALE_FACTORS", "HDMI-1=1.5"}}, atTwo, 2, 1.5},
        {{{"QT_SCREEN_SCALE_FACTORS", "1;2"}, {"QT_SCALE_FACTOR", "1.5"}}, {}, 1.5, 3},
        {{{"QT_SCALE_FACTOR", "nonsense"}, {"GDK_SCALE", "-1"}}, u"Xft.dpi: x"_s, 1, 1},
        {{{"QT_SCALE_FACTOR", "0.2"}}, {}, 1, 1},
    };
    for (const Case& given : cases) {
        clearEnvironment();
        for (const auto& [name, value] : given.environment)
            qputenv(name, value);
        const ScaleSettings settings = ScaleSettings::fromSession(given.resources);
        const auto index = &given - cases;
        EXPECT_DOUBLE_EQ(settings.scaleOf(u"DP-1"_s, 0), given.first) << "case " << index;
        EXPECT_DOUBLE_EQ(settings.scaleOf(u"HDMI-1"_s, 1), given.second) << "case " << index;
    }
    clearEnvironment();
}

}  // namespace
}  // namespace tralio
