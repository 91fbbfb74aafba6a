#pragma once

#include <QRect>
#include <QSize>

#include <map>
#include <vector>

#include "programs/recogniser/marks/text_marks.h"

namespace tralio {

/// A connected mark: a letter, a part of one, or several that touch.
struct MarkShape {
    QRect box;
    int region = 0;         ///< of the ground
    bool isShaded = false;  ///< whether that is a photograph
    TextMarks::Kind kind = TextMarks::Kind::difference;
    QRgb colour = 0;  ///< of its kind, if that is `ownColour`
};

/// A picture's marks but for its rules and frames.
struct MarkShapes {
    std::vector<MarkShape> shapes;
    /// For each kind of marks looked for, not 0 where there are rules and frames, and their blurred rim.
    std::map<TextMarks::Kind, Plane> rules;
    QSize size{};                 ///< of the picture
    std::vector<QRect> drawings;  ///< the small ones, such as icons
};

/// Every mark on a flat area is found by its own contrast: faint texts stand beside strong ones. In a shaded
/// region marks are looked for several times: as what differs, and as what has one of the colours that come
/// in pieces like letters.
[[nodiscard]] MarkShapes findMarkShapes(const TextMarks& marks);

}  // namespace tralio
