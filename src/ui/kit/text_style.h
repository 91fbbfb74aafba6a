#pragma once

#include <QFont>

namespace tralio {

enum class Weight { regular = 400, medium = 500, semibold = 600, bold = 700, heavy = 800 };

/// A text style: sizes in logical pixels, letter spacing in percent of the size.
///
/// `line` is the minimum height of a label and the distance of its lines. Vietnamese capitals with two marks
/// exceed the font's own ascent, so nothing may be sized by the font's height.
struct TextStyle {
    int size;
    int line;
    Weight weight = Weight::regular;
    double spacing = 0;
    bool fixedWidth = false;

    [[nodiscard]] constexpr TextStyle with(Weight other) const {
        TextStyle style = *this;
        style.weight = other;
        return style;
    }

    bool operator==(const TextStyle&) const = default;
};

namespace text {

inline constexpr TextStyle onboardingTitle{.size = 20, .line = 28, .weight = Weight::bold, .spacing = -1.8};
inline constexpr TextStyle panelTitle{.size = 15, .line = 20, .weight = Weight::bold, .spacing = -1};
inline constexpr TextStyle headline{.size = 13, .line = 20, .weight = Weight::bold};
inline constexpr TextStyle cardTitle{.size = 13, .line = 18, .weight = Weight::bold};
inline constexpr TextStyle body{.size = 13, .line = 20};
inline constexpr TextStyle menu{.size = 12, .line = 16, .weight = Weight::medium};
inline constexpr TextStyle menuItem{.size = 12, .line = 16};
inline constexpr TextStyle blockTitle{.size = 12, .line = 16, .weight = Weight::semibold};
inline constexpr TextStyle subtitle{.size = 12, .line = 18};
inline constexpr TextStyle caption{.size = 11, .line = 16};
inline constexpr TextStyle smallCaption{.size = 10, .line = 14};
inline constexpr TextStyle tiny{.size = 8, .line = 10, .weight = Weight::heavy};
inline constexpr TextStyle fixedWidth{.size = 11, .line = 16, .fixedWidth = true};
inline constexpr TextStyle promptEditor{.size = 11, .line = 17};

}  // namespace text

/// Makes fonts as heavy as they are drawn. Has an effect only before the first font of the program is loaded,
/// as the toolkit's own widgets do at their construction.
void loadFontsAsDrawn();

/// Loads the list of the installed fonts and those of the translate panel: 14 ms and 2 MB, with the pages
/// that other programs use, too, up to 5 MB.
void loadFonts();

[[nodiscard]] QFont fontFor(const TextStyle& style);

/// The distance of the baseline from the top of the line, on a whole device pixel.
[[nodiscard]] qreal baselineOf(const TextStyle& style, qreal devicePixelRatio);

}  // namespace tralio
