#pragma once

#include <QColor>

#include <array>
#include <cstddef>

namespace tralio {

/// What a colour is for. Widgets store the role and look the colour up while painting, so that a change of
/// theme or accent only needs a repaint.
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
    secondaryFaint,  ///< a large placeholder icon
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
    fillGradientEnd,  ///< the end of a gradient that begins with `accentFill` and carries white text
    disabledFill,
    disabledText,
    switchOff,
    // Lines and edges.
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

/// All colours of one scheme with one accent.
class Colors {
public:
    Colors(Scheme scheme, const QColor& accent);

    [[nodiscard]] QColor operator[](ColorRole role) const;

    /// The accent if the desktop sets none: blue.
    [[nodiscard]] static QColor defaultAccent();

private:
    QColor& at(ColorRole role);
    void deriveAccent(Scheme scheme, const QColor& accent);
    void deriveTints();

    std::array<QColor, std::size_t(ColorRole::count)> m_colors;
};

/// The contrast ratio of two opaque colours as defined by WCAG, 1 to 21.
[[nodiscard]] double contrast(const QColor& one, const QColor& other);

/// `top`, with its own opacity, painted over the opaque `bottom`.
[[nodiscard]] QColor over(const QColor& top, const QColor& bottom);

/// `color` at an opacity of `percent`.
[[nodiscard]] QColor withOpacity(const QColor& color, double percent);

}  // namespace tralio
