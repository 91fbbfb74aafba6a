#pragma once

#include "programs/recogniser/pixels/labels.h"

namespace tralio {

/// One mark among the others.
struct LabelledMark {
    const Labels& all;
    int label;
    QRect box;

    /// Counted from the corner of its box.
    [[nodiscard]] bool hasInk(int x, int y) const {
        return x >= 0 && x < box.width() && y >= 0 && y < box.height() &&
            all.at(box.left() + x, box.top() + y) == label;
    }
};

/// "▸" and "▾".
[[nodiscard]] bool isArrowhead(const LabelledMark& mark);

/// A cross whose strokes end as in a drawing. Those of an "x" end level.
[[nodiscard]] bool isDrawnCross(const LabelledMark& mark);

/// "›" and "⌄" as menus and fields have them. "<", "^" and brackets are wider or narrower.
[[nodiscard]] bool isChevron(const LabelledMark& mark);

/// A cross of two even strokes.
[[nodiscard]] bool isDrawnPlus(const LabelledMark& mark);

/// "✓".
[[nodiscard]] bool isTick(const LabelledMark& mark);

/// A thin square, to be ticked or around what closes a window. Signs such as "口" have feet.
[[nodiscard]] bool isCheckBox(const LabelledMark& mark, int area, int unit, int leastSide);

}  // namespace tralio
