#pragma once

#include <QColor>

#include <array>
#include <cstddef>

namespace tralio {

/// What a colour is for. Parts keep the role, not the colour, and look it up while they paint, so that a
/// change of theme or accent needs nothing but a repaint.
enum class ColorRole {
    none,  ///< paints nothing
    // Surfaces, from the window up.
    window,
    control,
    controlFaint,  ///< the swap button
    surface1,
    surface2,
    tabStrip,
    button,
    menu,
    textBackground,
    tooltip,
    // Text and icons.
    text,
    secondary,
    secondaryFaint,  ///< a large icon that only fills a place
    placeholder,
    tooltipText,
    onFill,  ///< text and icons on `accentFill` and `redFill`
    green,
    red,
    orange,
    orangeIcon,
    blue,
    purple,
    // The accent and what follows from it.
    accentIcon,
    accentFill,
    accentText,
    // Dots, fills and bases of tints.
    greenSolid,
    redSolid,
    orangeSolid,
    redFill,
    gradientEnd,
    fillGradientEnd,  ///< of a fill that begins with `accentFill` and carries white text
    disabledFill,
    disabledText,
    switchOff,
    // Lines.
    windowEdge,
    divider,
    hairline,
    buttonEdge,
    border15,
    border20,
    border25,
    fieldHoverEdge,
    keyCapFoot,
    separator,  ///< the dot between two words
    // Large tints, opaque, and their borders.
    accentTint,
    accentTintEdge,        ///< guide strip, donation card
    accentTintCardEdge,    ///< provider card
    accentTintActiveEdge,  ///< active chip
    greenTint,
    greenTintEdge,
    greenTestTint,
    redTint,
    redTintCardEdge,
    redTintEdge,  ///< footer warning
    orangeTint,
    // Small tints, translucent.
    accentBadge,  ///< also the busy main button
    greenBadge,
    redBadge,
    orangeBadge,
    blueBadge,
    purpleBadge,
    greenStatusBadge,
    redStatusBadge,
    emblemStart,
    emblemEnd,
    // States.
    hoverOverlay,
    pressedOverlay,
    fillHoverOverlay,
    fillPressedOverlay,
    focusOnFill,
    selection,
    scrollThumb,
    scrollThumbHover,
    scrollThumbDragged,
    // Shadows.
    windowShadow,
    windowNearShadow,
    menuShadow,
    count
};

enum class Scheme { light, dark };

/// Every colour of one scheme with one accent.
class Colors {
public:
    Colors(Scheme scheme, const QColor& accent);

    [[nodiscard]] QColor operator[](ColorRole role) const;

    /// The blue that stands where the desktop names no accent.
    [[nodiscard]] static QColor defaultAccent();

private:
    QColor& at(ColorRole role);
    void deriveAccent(Scheme scheme, const QColor& accent);
    void deriveTints();

    std::array<QColor, std::size_t(ColorRole::count)> m_colors;
};

/// Contrast ratio of two opaque colours, 1 to 21, as WCAG defines it.
[[nodiscard]] double contrast(const QColor& one, const QColor& other);

/// `top`, with its own opacity, painted over the opaque `bottom`.
[[nodiscard]] QColor over(const QColor& top, const QColor& bottom);

/// `color` at an opacity of `percent`.
[[nodiscard]] QColor withOpacity(const QColor& color, double percent);

}  // namespace tralio
