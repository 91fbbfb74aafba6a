#include <gmock/gmock.h>

#include "ui/kit/label.h"
#include "ui/kit/theme.h"
#include "widget_support.h"

using namespace Qt::StringLiterals;

namespace tralio {
namespace {

struct Accent {
    const char* name;
    const char* accent;
    const char* fill;
    const char* textLight;
    const char* textDark;
    const char* iconLight;  ///< differs from the accent only where it is too faint on the light window
};

constexpr Accent accents[] = {
    {"blue", "#0A84FF", "#0072E5", "#005EBC", "#61B0FF", "#0A84FF"},
    {"purple", "#8E5CF7", "#844DF6", "#6C2BF5", "#BA9BFA", "#8E5CF7"},
    {"pink", "#E8478B", "#E01C6F", "#B7175B", "#F08BB6", "#E8478B"},
    {"orange", "#E8731A", "#B75A12", "#974A0F", "#EE9856", "#D86A16"},
    {"green", "#2FA84F", "#25843E", "#1E6C33", "#38C75E", "#2C9C49"},
    {"grey", "#7A828E", "#6E7581", "#5B616B", "#A6ABB3", "#7A828E"},
};

QColor named(const char* name) {
    return QColor(QLatin1StringView(name));
}

TEST(Colors, the_accent_roles_follow_from_the_accent) {
    for (const Accent& accent : accents) {
        SCOPED_TRACE(accent.name);
        const Colors light(Scheme::Light, named(accent.accent));
        const Colors dark(Scheme::Dark, named(accent.accent));
        EXPECT_EQ(light[ColorRole::AccentFill], named(accent.fill));
        EXPECT_EQ(dark[ColorRole::AccentFill], named(accent.fill));
        EXPECT_EQ(light[ColorRole::AccentText], named(accent.textLight));
        EXPECT_EQ(dark[ColorRole::AccentText], named(accent.textDark));
        EXPECT_EQ(light[ColorRole::AccentIcon], named(accent.iconLight));
        EXPECT_EQ(dark[ColorRole::AccentIcon], named(accent.accent));
    }
}

TEST(Colors, extreme_accents_end_at_something_readable) {
    for (const QColor& accent : {QColor(Qt::white), QColor(Qt::black), QColor(Qt::yellow), QColor()}) {
        for (const Scheme scheme : {Scheme::Light, Scheme::Dark}) {
            const Colors colors(scheme, accent);
            EXPECT_GE(contrast(Qt::white, colors[ColorRole::AccentFill]), 4.5);
            EXPECT_GE(contrast(colors[ColorRole::AccentText], colors[ColorRole::Window]), 4.5);
        }
    }
}

TEST(Colors, large_tints_are_mixed_over_the_section) {
    const Colors light(Scheme::Light, Colors::defaultAccent());
    const Colors dark(Scheme::Dark, Colors::defaultAccent());
    const std::tuple<ColorRole, const char*, const char*> tints[] = {
        {ColorRole::AccentTint, "#E6F1FC", "#242E3D"},    {ColorRole::GreenTint, "#E9F5EF", "#273330"},
        {ColorRole::GreenTestTint, "#E5F4EB", "#273631"}, {ColorRole::RedTint, "#FAE7E8", "#3C2A2D"},
        {ColorRole::OrangeTint, "#FAF0E3", "#3C3329"},
    };
    for (const auto& [role, inLight, inDark] : tints) {
        EXPECT_EQ(light[role].name().toUpper(), QLatin1StringView(inLight));
        EXPECT_EQ(dark[role].name().toUpper(), QLatin1StringView(inDark));
    }
}

/// A text, the surface it stands on, and a translucent tint between them.
struct Reading {
    ColorRole text;
    ColorRole surface;
    ColorRole tint = ColorRole::None;
};

constexpr Reading readings[] = {
    {ColorRole::Text, ColorRole::Window},
    {ColorRole::Text, ColorRole::Control},
    {ColorRole::Text, ColorRole::Surface1},
    {ColorRole::Text, ColorRole::Surface2},
    {ColorRole::Text, ColorRole::TabStrip},
    {ColorRole::Text, ColorRole::Button},
    {ColorRole::Text, ColorRole::Button, ColorRole::PressedOverlay},
    {ColorRole::Text, ColorRole::Menu},
    {ColorRole::Text, ColorRole::TextBackground},
    {ColorRole::Text, ColorRole::TextBackground, ColorRole::Selection},
    {ColorRole::Text, ColorRole::Surface1, ColorRole::Selection},
    {ColorRole::Text, ColorRole::AccentTint},
    {ColorRole::Secondary, ColorRole::Window},
    {ColorRole::Secondary, ColorRole::Control},
    {ColorRole::Secondary, ColorRole::Surface1},
    {ColorRole::Secondary, ColorRole::Surface2},
    {ColorRole::Secondary, ColorRole::Button},
    {ColorRole::Secondary, ColorRole::AccentTint},
    {ColorRole::Placeholder, ColorRole::TextBackground},
    {ColorRole::Placeholder, ColorRole::Surface1},
    {ColorRole::Placeholder, ColorRole::Window},
    {ColorRole::AccentText, ColorRole::Window},
    {ColorRole::AccentText, ColorRole::Window, ColorRole::AccentBadge},
    {ColorRole::AccentText, ColorRole::Surface1},
    {ColorRole::AccentText, ColorRole::Surface2},
    {ColorRole::AccentText, ColorRole::TextBackground},
    {ColorRole::AccentText, ColorRole::AccentTint},
    {ColorRole::OnFill, ColorRole::AccentFill},
    {ColorRole::OnFill, ColorRole::AccentFill, ColorRole::FillPressedOverlay},
    {ColorRole::OnFill, ColorRole::RedFill},
    {ColorRole::Green, ColorRole::Surface1},
    {ColorRole::Green, ColorRole::Surface2},
    {ColorRole::Green, ColorRole::GreenTestTint},
    {ColorRole::Green, ColorRole::AccentTint, ColorRole::GreenBadge},
    {ColorRole::Green, ColorRole::GreenTint, ColorRole::GreenStatusBadge},
    {ColorRole::Red, ColorRole::Window},
    {ColorRole::Red, ColorRole::Control},
    {ColorRole::Red, ColorRole::Surface1},
    {ColorRole::Red, ColorRole::RedTint},
    {ColorRole::Red, ColorRole::RedTint, ColorRole::RedStatusBadge},
    {ColorRole::Orange, ColorRole::OrangeTint},
    {ColorRole::TooltipText, ColorRole::Tooltip},
};

TEST(Colors, every_text_is_readable_on_its_surface_in_both_schemes_and_six_accents) {
    for (const Accent& accent : accents) {
        for (const Scheme scheme : {Scheme::Light, Scheme::Dark}) {
            const Colors colors(scheme, named(accent.accent));
            for (const Reading& reading : readings) {
                const QColor ground = over(colors[reading.tint], colors[reading.surface]);
                EXPECT_GE(contrast(colors[reading.text], ground), 4.5)
                    << accent.name << (scheme == Scheme::Light ? " light" : " dark") << ": text "
                    << int(reading.text) << " on surface " << int(reading.surface) << " with tint "
                    << int(reading.tint);
            }
        }
    }
}

TEST(Theme, a_change_of_appearance_repaints_what_is_already_shown) {
    const Appearance before = Theme::current().appearance();
    Label label(u"Tralio"_s, text::body, ColorRole::AccentText);
    label.resize(label.sizeHint());
    const QImage light = pictureOf(label);
    int announced = 0;
    QObject::connect(&Theme::current(), &Theme::changed, &label, [&] { ++announced; });

    Theme::setAppearance({.dark = true});
    EXPECT_FALSE(difference(light, pictureOf(label)).isEmpty());
    Theme::setAppearance({.dark = true});
    EXPECT_EQ(announced, 1) << "an equal appearance is no change";
    Theme::setAppearance({.dark = true, .reducedMotion = true});
    EXPECT_EQ(Theme::current().duration(150), 0);
    Theme::setAppearance(before);
}

}  // namespace
}  // namespace tralio
