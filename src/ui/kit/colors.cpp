#include "ui/kit/colors.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace tralio {
namespace {

/// `rgb` as 0xRRGGBB, with an opacity of `percent`.
struct Shade {
    quint32 rgb;
    double percent = 100;
};

struct Row {
    ColorRole role;
    Shade light;
    Shade dark;
};

constexpr quint32 white = 0xFFFFFF;
constexpr quint32 ink = 0x161C26;

constexpr Row fixedColors[] = {
    {ColorRole::none, {white, 0}, {white, 0}},
    {ColorRole::window, {0xF3F5F8}, {0x1E1F23}},
    {ColorRole::control, {0xFFFFFF}, {0x2D2F35}},
    {ColorRole::surface1, {0xF9FAFC}, {0x26272C}},
    {ColorRole::surface2, {0xFDFDFE}, {0x2A2C31}},
    {ColorRole::tabStrip, {0xFFFFFF}, {0x2A2C31}},
    {ColorRole::button, {0xFFFFFF}, {0x34373E}},
    {ColorRole::menu, {0xFFFFFF}, {0x2D2F35}},
    {ColorRole::textBackground, {0xFFFFFF}, {0x151619}},
    {ColorRole::tooltip, {0x2A2D33}, {0xF0F1F3}},
    {ColorRole::text, {0x1A1C20}, {0xF0F1F3}},
    {ColorRole::secondary, {0x565D67}, {0xA5ABB5}},
    {ColorRole::placeholder, {0x6A707A}, {0x8F95A0}},
    {ColorRole::tooltipText, {0xF0F1F3}, {0x1A1C20}},
    {ColorRole::onFill, {white}, {white}},
    {ColorRole::green, {0x117036}, {0x4CCB7B}},
    {ColorRole::red, {0xB8221A}, {0xFF8178}},
    {ColorRole::orange, {0x8F4C00}, {0xFFB648}},
    {ColorRole::orangeIcon, {0xC76A00}, {0xFFB648}},
    {ColorRole::blue, {0x005EBC}, {0x61B0FF}},
    {ColorRole::purple, {0x7C3AED}, {0xB692FF}},
    {ColorRole::greenSolid, {0x2DBE55}, {0x30B85C}},
    {ColorRole::redSolid, {0xFF3B30}, {0xFF453A}},
    {ColorRole::orangeSolid, {0xFF9500}, {0xFF9F0A}},
    {ColorRole::redFill, {0xCF352A}, {0xCF352A}},
    {ColorRole::gradientEnd, {0x7C3AED}, {0x8B5CF6}},
    {ColorRole::fillGradientEnd, {0x7C3AED}, {0x7C3AED}},
    {ColorRole::disabledFill, {0xE4E7EC}, {0x2B2D33}},
    {ColorRole::disabledText, {0x78808B}, {0x767C87}},
    {ColorRole::switchOff, {0xB4BAC4}, {0x565B65}},
    {ColorRole::windowEdge, {ink, 12}, {white, 13}},
    {ColorRole::divider, {ink, 8}, {white, 8}},
    {ColorRole::hairline, {ink, 7}, {white, 6}},
    {ColorRole::buttonEdge, {ink, 14}, {white, 12}},
    {ColorRole::keyCapFoot, {0x565D67, 30}, {0x000000, 45}},
    {ColorRole::hoverOverlay, {ink, 5}, {white, 6}},
    {ColorRole::pressedOverlay, {ink, 10}, {white, 12}},
    {ColorRole::fillHoverOverlay, {0x000000, 8}, {0x000000, 8}},
    {ColorRole::fillPressedOverlay, {0x000000, 16}, {0x000000, 16}},
    {ColorRole::focusOnFill, {white, 92}, {white, 92}},
    {ColorRole::scrollThumb, {ink, 22}, {white, 24}},
    {ColorRole::scrollThumbHover, {ink, 36}, {white, 38}},
    {ColorRole::scrollThumbDragged, {ink, 48}, {white, 50}},
    {ColorRole::windowShadow, {ink, 22}, {0x000000, 42}},
    {ColorRole::windowNearShadow, {ink, 10}, {0x000000, 28}},
    {ColorRole::menuShadow, {ink, 22}, {0x000000, 42}},
};

double luminance(const QColor& color) {
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// Hue, saturation and lightness, each from 0 to 1. QColor stores them in 16 bits, whose rounding errors
/// would add up over the steps below.
struct Hsl {
    double hue = 0;
    double saturation = 0;
    double lightness = 0;
};

Hsl hslOf(const QColor& color) {
    const double red = color.red() / 255.0;
    const double green = color.green() / 255.0;
    const double blue = color.blue() / 255.0;
    const auto [least, most] = std::minmax({red, green, blue});
    const double range = most - least;
    Hsl hsl{.lightness = (most + least) / 2};
    if (range == 0)
        return hsl;
    hsl.saturation = hsl.lightness <= 0.5 ? range / (most + least) : range / (2 - most - least);
    if (red == most)
        hsl.hue = (green - blue) / range / 6;
    else if (green == most)
        hsl.hue = (2 + (blue - red) / range) / 6;
    else
        hsl.hue = (4 + (red - green) / range) / 6;
    return hsl;
}

QColor colorOf(const Hsl& hsl) {
    const double lightness = hsl.lightness;
    const double upper = lightness <= 0.5 ? lightness * (1 + hsl.saturation)
                                          : lightness + hsl.saturation - lightness * hsl.saturation;
    const double lower = 2 * lightness - upper;
    const auto channel = [&](double hue) {
        hue -= std::floor(hue);
        const double slope = hue < 1.0 / 6 ? hue * 6
            : hue < 0.5                    ? 1
            : hue < 2.0 / 3                ? (2.0 / 3 - hue) * 6
                                           : 0;
        // Rounds halves to even, the default rounding mode.
        return int(std::nearbyint(255 * (lower + (upper - lower) * slope)));
    };
    return {channel(hsl.hue + 1.0 / 3), channel(hsl.hue), channel(hsl.hue - 1.0 / 3)};
}

/// Changes the lightness of `color` in steps of one percent, keeping hue and saturation, until `enough`.
/// Stops at black or white, if no lightness is enough.
QColor movedUntil(const QColor& color, double step, const std::function<bool(const QColor&)>& enough) {
    const Hsl start = hslOf(color);
    Hsl hsl = start;
    QColor moved(color.rgb());
    for (int steps = 1; steps <= 100 && !enough(moved); ++steps) {
        hsl.lightness = std::clamp(start.lightness + steps * step, 0.0, 1.0);
        moved = colorOf(hsl);
    }
    return moved;
}

}  // namespace

double contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor over(const QColor& top, const QColor& bottom) {
    const double share = top.alphaF();
    const auto mix = [share](int upper, int lower) {
        return int(std::lround(share * upper + (1 - share) * lower));
    };
    return {mix(top.red(), bottom.red()), mix(top.green(), bottom.green()), mix(top.blue(), bottom.blue())};
}

QColor withOpacity(const QColor& color, double percent) {
    QColor result = color;
    result.setAlphaF(float(percent / 100));
    return result;
}

Colors::Colors(Scheme scheme, const QColor& accent) {
    for (const Row& row : fixedColors) {
        const Shade& shade = scheme == Scheme::light ? row.light : row.dark;
        at(row.role) = withOpacity(QColor(QRgb(shade.rgb)), shade.percent);
    }
    deriveAccent(scheme, accent.isValid() ? accent : defaultAccent());
    deriveTints();
}

QColor Colors::operator[](ColorRole role) const {
    return m_colors[std::size_t(role)];
}

QColor Colors::defaultAccent() {
    return QColor(QRgb(0x0A84FF));
}

QColor& Colors::at(ColorRole role) {
    return m_colors[std::size_t(role)];
}

void Colors::deriveAccent(Scheme scheme, const QColor& accent) {
    const bool light = scheme == Scheme::light;
    const QColor ground = at(light ? ColorRole::window : ColorRole::control);
    const double towardsText = light ? -0.01 : 0.01;

    const QColor icon = movedUntil(
        accent, towardsText, [&](const QColor& candidate) { return contrast(candidate, ground) >= 3.1; });
    const QColor badge = over(withOpacity(icon, 15), ground);
    at(ColorRole::accentIcon) = icon;
    at(ColorRole::accentFill) = movedUntil(
        accent, -0.01, [](const QColor& candidate) { return contrast(candidate, Qt::white) >= 4.6; });
    at(ColorRole::accentText) = movedUntil(
        accent, towardsText, [&](const QColor& candidate) { return contrast(candidate, badge) >= 4.8; });
}

void Colors::deriveTints() {
    const auto translucent = [this](ColorRole role, ColorRole base, double percent) {
        at(role) = withOpacity(at(base), percent);
    };
    // Large tints are opaque, so that they look the same on the window and inside a section.
    const auto opaque = [this](ColorRole role, ColorRole base, double percent) {
        at(role) = over(withOpacity(at(base), percent), at(ColorRole::surface1));
    };
    opaque(ColorRole::accentTint, ColorRole::accentIcon, 8);
    translucent(ColorRole::accentTintEdge, ColorRole::accentIcon, 20);
    translucent(ColorRole::accentTintCardEdge, ColorRole::accentIcon, 25);
    translucent(ColorRole::accentTintActiveEdge, ColorRole::accentIcon, 40);
    opaque(ColorRole::greenTint, ColorRole::greenSolid, 8);
    translucent(ColorRole::greenTintEdge, ColorRole::greenSolid, 20);
    opaque(ColorRole::greenTestTint, ColorRole::greenSolid, 10);
    opaque(ColorRole::redTint, ColorRole::redSolid, 10);
    translucent(ColorRole::redTintCardEdge, ColorRole::redSolid, 30);
    translucent(ColorRole::redTintEdge, ColorRole::redSolid, 35);
    opaque(ColorRole::orangeTint, ColorRole::orangeSolid, 10);

    translucent(ColorRole::accentBadge, ColorRole::accentIcon, 15);
    translucent(ColorRole::greenBadge, ColorRole::greenSolid, 15);
    translucent(ColorRole::redBadge, ColorRole::redSolid, 15);
    translucent(ColorRole::orangeBadge, ColorRole::orangeSolid, 15);
    at(ColorRole::blueBadge) = withOpacity(defaultAccent(), 15);
    translucent(ColorRole::purpleBadge, ColorRole::purple, 14);
    translucent(ColorRole::greenStatusBadge, ColorRole::greenSolid, 12);
    translucent(ColorRole::redStatusBadge, ColorRole::redSolid, 12);
    translucent(ColorRole::emblemStart, ColorRole::accentIcon, 20);
    translucent(ColorRole::emblemEnd, ColorRole::purple, 15);
    translucent(ColorRole::controlFaint, ColorRole::control, 80);
    translucent(ColorRole::selection, ColorRole::accentIcon, 30);
    translucent(ColorRole::secondaryFaint, ColorRole::secondary, 60);
    translucent(ColorRole::border15, ColorRole::secondary, 15);
    translucent(ColorRole::border20, ColorRole::secondary, 20);
    translucent(ColorRole::border25, ColorRole::secondary, 25);
    translucent(ColorRole::separator, ColorRole::secondary, 50);
    translucent(ColorRole::fieldHoverEdge, ColorRole::secondary, 40);
}

}  // namespace tralio
