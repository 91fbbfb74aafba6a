#pragma once

#include <algorithm>
#include <vector>

#include "programs/recogniser/marks/mark_shapes.h"

namespace tralio {

/// Marks that look like a line of text: letters side by side, with the dots and accents that belong to them.
/// A gap as wide as between columns ends a line.
struct TextLine {
    QRect box;
    int region = 0;
    bool isShaded = false;
    TextMarks::Kind kind = TextMarks::Kind::difference;
    QRgb colour = 0;
    std::vector<QRect> letters;   ///< from left to right
    std::vector<QRect> dots;      ///< what is too small for a letter
    std::vector<QRect> unread{};  ///< what engines are not shown

    /// Letters and dots, from left to right.
    [[nodiscard]] std::vector<QRect> marks() const {
        std::vector<QRect> all = letters;
        all.insert(all.end(), dots.begin(), dots.end());
        std::ranges::sort(all, {}, [](const QRect& mark) { return mark.left(); });
        return all;
    }

    /// The usual height of its letters.
    [[nodiscard]] int letterHeight() const;
};

/// `unit` is the number of pixels of a logical one.
[[nodiscard]] std::vector<TextLine> findTextLines(const MarkShapes& found, int unit);

}  // namespace tralio
