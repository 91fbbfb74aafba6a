#pragma once

#include "programs/recogniser/text_lines.h"

namespace tralio {

/// Makes the bullet that a line begins with, if there is one, unread: engines see a letter in it.
void setBulletAside(TextLine& line);

}  // namespace tralio
