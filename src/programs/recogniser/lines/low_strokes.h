#pragma once

#include <QRectF>

#include <vector>

#include "programs/recogniser/lines/text_lines.h"

namespace tralio {

/// The underlines of single letters, which mark the keys of menus, are not read.
void setKeyMarksAside(TextLine& line);

/// The strokes that stand where an underscore does.
[[nodiscard]] std::vector<QRectF> underscoresOf(const TextLine& line);

}  // namespace tralio
