#pragma once

#include <climits>
#include <vector>

#include "programs/recogniser/marks/text_marks.h"
#include "programs/recogniser/pixels/labels.h"

namespace tralio {

/// Letters with a rim around each, as captions have, belong to no region of the ground: one word may stand on
/// several flat areas and on a photograph. They count as of a photograph.
inline constexpr int regionOfOutlined = INT_MAX;

/// How a group of pixels of one colour stands out.
struct Rim {
    int length = 0;    ///< the pixels around it
    int contrast = 0;  ///< those that differ much from the group
    int own = 0;       ///< those of these that differ from the ground as well, as does the group beside them

    /// It is set off on all sides.
    [[nodiscard]] bool isClosed() const { return length > 0 && contrast * 100 >= length * 85; }
    /// What sets it off was put around it.
    [[nodiscard]] bool isOutline() const { return isClosed() && own * 2 >= length; }
};
/// Of the wanted groups; the others have none.
[[nodiscard]] std::vector<Rim> rimsOf(
    const Labels& groups, const std::vector<bool>& wanted, const TextMarks& marks);

/// The boxes of the marks that are letters with outlines, and of those beside them whose outlines do not show
/// on their ground; none if there are too few for a word. `ink`: what has the colour of the letters.
[[nodiscard]] std::vector<QRect> findOutlinedLetters(const Labels& ink, const TextMarks& marks);

}  // namespace tralio
