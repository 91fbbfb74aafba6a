#pragma once

#include "programs/recogniser/lines/text_lines.h"

namespace tralio {

/// Makes the bullet or the icon that a line begins with, if there is one, unread: engines see a letter in it.
/// So do the icons of a menu's or a list's column, and the underlines that mark keys. Drops rules that stand
/// alone, and what the picture's edge left of a mark.
void setAsideUnread(std::vector<TextLine>& lines, const MarkShapes& found, int unit);

}  // namespace tralio
