#pragma once

#include <vector>

#include "programs/recogniser/lines/text_lines.h"
#include "programs/recogniser/pixels/place_index.h"

namespace tralio {

/// What stands before the text of a line, as part of that or as a line of its own, or as a drawing.
struct Lead {
    size_t line;
    size_t text;  ///< the line that it stands before
    QRect box;
    int textLeft;
    bool isMisfit;  ///< is no sign of a text
    bool isWhole;   ///< is no two letters
    bool isDrawing = false;
};

/// The lower edge of a text's letters, and how high its capitals are.
struct Type {
    int base;
    int height;
    int highest;  ///< of its letters

    explicit Type(std::vector<QRect> letters);
};

/// Of all lines but those in photographs.
[[nodiscard]] PlaceIndex placesOf(const std::vector<TextLine>& lines);

/// Takes from a line the marks that begin no further right than that.
void dropUpTo(int right, TextLine& line);

/// The drawings that texts stand behind.
[[nodiscard]] std::vector<Lead> drawnLeads(
    const std::vector<TextLine>& lines, const std::vector<QRect>& drawings, const PlaceIndex& places);

}  // namespace tralio
