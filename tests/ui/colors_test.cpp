#include "ui/kit/colors.h"

#include <vector>

#include "support/testing.h"

namespace tralio {
namespace {

QColor named(const char* name) {
    return QColor(QLatin1StringView(name));
}

TEST(Colors, an_accent_moves_as_far_as_it_takes_to_be_readable_and_keeps_its_hue) {
    struct Accent {
        const char* accent;
        const char* fill;
        const char* textLight;
        const char* textDark;
        const char* iconLight;
    };
    constexpr Accent accents[] = {
        {"#0A84FF", "#0072E5", "#005EBC", "#61B0FF", "#0A84FF"},
        {"#E8731A", "#B75A12", "#974A0F", "#EE9856", "#D86A16"},
        {"#2FA84F", "#25843E", "#1E6C33", "#38C75E", "#2C9C49"},
    };
    for (const Accent& given : accents) {
        const Colors light(Scheme::light, named(given.accent));
        const Colors dark(Scheme::dark, named(given.accent));
        EXPECT_EQ(light[ColorRole::accentFill], named(given.fill));
        EXPECT_EQ(dark[ColorRole::accentFill], named(given.fill));
        EXPECT_EQ(light[ColorRole::accentText], named(given.textLight));
        EXPECT_EQ(dark[ColorRole::accentText], named(given.textDark));
        EXPECT_EQ(light[ColorRole::accentIcon], named(given.iconLight));
        EXPECT_EQ(dark[ColorRole::accentIcon], named(given.accent));
    }
}

TEST(Colors, every_role_has_one_in_both_schemes) {
    for (const Scheme scheme : {Scheme::light, Scheme::dark})
        for (int role = int(ColorRole::none) + 1; role < int(ColorRole::count); ++role)
            EXPECT_TRUE(Colors(scheme, named("#007aff"))[ColorRole(role)].isValid()) << role;
}

TEST(Colors, every_text_is_readable_on_its_surfaces_in_both_schemes_and_any_accent) {
    using enum ColorRole;
    struct Ground {
        ColorRole surface;
        ColorRole tint;  ///< over the surface
        std::vector<ColorRole> texts;
    };
    const Ground grounds[] = {
        {window, none, {text, secondary, placeholder, accentText, red}},
        {window, accentBadge, {accentText}},
        {control, none, {text, secondary, red}},
        {surface1, none, {text, secondary, placeholder, accentText, green, red}},
        {surface1, selection, {text}},
        {surface2, none, {text, secondary, accentText, green}},
        {tabStrip, none, {text}},
        {button, none, {text, secondary}},
        {button, pressedOverlay, {text}},
        {menu, none, {text}},
        {textBackground, none, {text, placeholder, accentText}},
        {textBackground, selection, {text}},
        {accentTint, none, {text, secondary, accentText, red}},
        {accentTint, greenBadge, {green}},
        {accentFill, none, {onFill}},
        {accentFill, fillPressedOverlay, {onFill}},
        {redFill, none, {onFill}},
        {greenTestTint, none, {green}},
        {greenTint, greenStatusBadge, {green}},
        {redTint, none, {red}},
        {redTint, redStatusBadge, {red}},
        {orangeTint, none, {orange}},
        {tooltip, none, {tooltipText}},
    };
    for (const char* accent : {"#0A84FF", "#8E5CF7", "#E8478B", "#E8731A", "#2FA84F", "#7A828E"}) {
        for (const Scheme scheme : {Scheme::light, Scheme::dark}) {
            const Colors colors(scheme, named(accent));
            for (const auto& [surface, tint, texts] : grounds) {
                const QColor ground = over(colors[tint], colors[surface]);
                for (const ColorRole text : texts)
                    EXPECT_GE(contrast(colors[text], ground), 4.5)
                        << accent << (scheme == Scheme::light ? " light" : " dark") << ": text " << int(text)
                        << " on surface " << int(surface) << " with tint " << int(tint);
            }
        }
    }
    for (const QColor& accent : {QColor(Qt::white), QColor(Qt::black), QColor(Qt::yellow), QColor()}) {
        for (const Scheme scheme : {Scheme::light, Scheme::dark}) {
            const Colors colors(scheme, accent);
            EXPECT_GE(contrast(colors[onFill], colors[accentFill]), 4.5) << accent.name().toStdString();
            EXPECT_GE(contrast(colors[accentText], colors[window]), 4.5) << accent.name().toStdString();
        }
    }
}

}  // namespace
}  // namespace tralio
