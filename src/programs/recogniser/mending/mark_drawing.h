#pragma once

#include "programs/recogniser/lines/text_blocks.h"

namespace tralio {

/// What a mark's rows of pixels show.
struct Drawing {
    double lean = 0;  ///< columns to the right for one row down
    double bend = 0;  ///< how far its rows' middles are from its own, in pixels of the image
};

/// `mark` is in the image.
[[nodiscard]] Drawing drawingOf(const QRect& mark, const BlockPicture& picture);

/// Whether a line's letters lean to the right.
[[nodiscard]] bool isSlanted(const TextLine& line, const BlockPicture& picture);

}  // namespace tralio
