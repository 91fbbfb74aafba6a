#pragma once

#include "figures.h"

namespace tralio {

/// What recognising a picture of 600x200 takes, in milliseconds: by our recogniser once it has its engines,
/// and by the tesseract program with the same two languages, by turns. `folder` is for the picture.
struct Recognition {
    Samples ours;
    Samples tesseract;
};
[[nodiscard]] Recognition measureRecognition(const QString& folder, int rounds);

}  // namespace tralio
