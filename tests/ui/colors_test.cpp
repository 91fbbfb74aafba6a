#include "ui/kit/colors.h"

#include <array>

#include "support/testing.h"

namespace tralio {
namespace {

QColor named(const char* name) {
    return QColor(QLatin1StringView(name));
}

TEST(Colors, an_accent_moves_as_far_as_it_takes_to_be_readable_and_keeps_its_hue) {
    using Roles = std::array<const char*, 3>;  // fill, text and icon
    constexpr std::tuple<const char*, Roles, Roles> accents[] = {
        {"#0A84FF", {"#0072E5", "#005EBC", "#0A84FF"}, {"#0072E5", "#61B0FF", "#0A84FF"}},
        {"#E8731A", {"#B75A12", "#974A0F", "#D86A16"}, {"#B75A12", "#EE9856", "#E8731A"}},
        {"#2FA84F", {"#25843E", "#1E6C33", "#2C9C49"}, {"#25843E", "#38C75E", "#2FA84F"}},
    };
    for (const auto& [accent, light, dark] : accents) {
        for (const auto& [scheme, roles] : {std::pair(Scheme::light, light), std::pair(Scheme::dark, dark)}) {
            const Colors colors(scheme, named(accent));
            EXPECT_EQ(colors[ColorRole::accentFill], named(roles[0]));
            EXPECT_EQ(colors[ColorRole::accentText], named(roles[1]));
            EXPECT_EQ(colors[ColorRole::accentIcon], named(roles[2]));
        }
    }
}

TEST(Colors, every_role_has_a_colour_and_every_text_is_readable_in_both_schemes_and_any_accent) {
    using enum ColorRole;
    // Surfaces, the tints over them, and the texts on both.
    const std::tuple<ColorRole, ColorRole, std::vector<ColorRole>> grounds[] = {
        {window, none, {text, secondary, placeholder, accentText, red}}, {window, accentBadge, {accentText}},
        {control, none, {text, secondary, red}},
        {surface1, none, {text, secondary, placeholder, accentText, green, red}},
        {surface1, selection, {text}}, {surface2, none, {text, secondary, accentText, green}},
        {tabStrip, none, {text}}, {button, none, {text, secondary}}, {button, pressedOverlay, {text}},
        {menu, none, {text}}, {textBackground, none, {text, placeholder, accentText}},
        {textBackground, selection, {text}}, {accentTint, none, {text, secondary, accentText, red}},
        {accentTint, greenBadge, {green}}, {accentFill, none, {onFill}},
        {accentFill, fillPressedOverlay, {onFill}}, {redFill, none, {onFill}}, {greenTestTint, none, {green}},
        {greenTint, greenStatusBadge, {green}}, {redTint, none, {red}}, {redTint, redStatusBadge, {red}},
        {orangeTint, none, {orange}}, {tooltip, none, {tooltipText}}};
    for (const char* accent :
        {"#0A84FF", "#8E5CF7", "#E8478B", "#E8731A", "#2FA84F", "#7A828E", "#FFFFFF", "#FFFF00", "none"}) {
        for (const Scheme scheme : {Scheme::light, Scheme::dark}) {
            const Colors colors(scheme, named(accent));
            for (int role = int(none) + 1; role < int(count); ++role)
                EXPECT_TRUE(colors[ColorRole(role)].isValid()) << role;
            for (const auto& [surface, tint, texts] : grounds) {
                const QColor ground = over(colors[tint], colors[surface]);
                for (const ColorRole text : texts)
                    EXPECT_GE(contrast(colors[text], ground), 4.5)
                        << accent << (scheme == Scheme::light ? " light" : " dark") << ": text " << int(text)
                        << " on surface " << int(surface) << " with tint " << int(tint);
            }
        }
    }
}

}  // namespace
}  // namespace tralio
