#pragma once

#include "programs/recogniser/text_lines.h"

namespace tralio {

/// Makes the bullet or the icon that a line begins with, if there is one, unread: engines see a letter in it.
void setIconAside(TextLine& line);

}  // namespace tralio
