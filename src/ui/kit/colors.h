#pragma once

#include <QColor>

#include <array>
#include <cstddef>

namespace tralio {

/// What a colour is for. Parts keep the role, not the colour, and look it up while they paint, so that a
/// change of theme or accent needs nothing but a repaint.
enum class ColorRole {
    None,  ///< paints nothing
    // Surfaces, from the window up.
    Window,
    Control,
    ControlFaint,  ///< the swap button
    Surface1,
    Surface2,
    TabStrip,
    Button,
    Menu,
    TextBackground,
    Tooltip,
    // Text and icons.
    Text,
    Secondary,
    SecondaryFaint,  ///< a large icon that only fills a place
    Placeholder,
    TooltipText,
    OnFill,  ///< text and icons on `AccentFill` and `RedFill`
    Green,
    Red,
    Orange,
    OrangeIcon,
    Purple,
    // The accent and what follows from it.
    AccentIcon,
    AccentFill,
    AccentText,
    // Dots, fills and bases of tints.
    GreenSolid,
    RedSolid,
    OrangeSolid,
    RedFill,
    GradientEnd,
    FillGradientEnd,  ///< of a fill that begins with `AccentFill` and carries white text
    DisabledFill,
    DisabledText,
    SwitchOff,
    // Lines.
    WindowEdge,
    Divider,
    Hairline,
    ButtonEdge,
    Border15,
    Border20,
    Border25,
    FieldHoverEdge,
    KeyCapFoot,
    Separator,  ///< the dot between two words
    // Large tints, opaque, and their borders.
    AccentTint,
    AccentTintEdge,        ///< guide strip, donation card
    AccentTintCardEdge,    ///< provider card
    AccentTintActiveEdge,  ///< active chip
    GreenTint,
    GreenTintEdge,
    GreenTestTint,
    RedTint,
    RedTintCardEdge,
    RedTintEdge,  ///< footer warning
    OrangeTint,
    // Small tints, translucent.
    AccentBadge,  ///< also the busy main button
    GreenBadge,
    RedBadge,
    OrangeBadge,
    PurpleBadge,
    GreenStatusBadge,
    RedStatusBadge,
    EmblemStart,
    EmblemEnd,
    // States.
    HoverOverlay,
    PressedOverlay,
    FillHoverOverlay,
    FillPressedOverlay,
    FocusOnFill,
    Selection,
    ScrollThumb,
    ScrollThumbHover,
    ScrollThumbDragged,
    // Shadows.
    WindowShadow,
    WindowNearShadow,
    MenuShadow,
    Count
};

enum class Scheme { Light, Dark };

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

    std::array<QColor, std::size_t(ColorRole::Count)> m_colors;
};

/// Contrast ratio of two opaque colours, 1 to 21, as WCAG defines it.
[[nodiscard]] double contrast(const QColor& one, const QColor& other);

/// `top`, with its own opacity, painted over the opaque `bottom`.
[[nodiscard]] QColor over(const QColor& top, const QColor& bottom);

/// `color` at an opacity of `percent`.
[[nodiscard]] QColor withOpacity(const QColor& color, double percent);

}  // namespace tralio
