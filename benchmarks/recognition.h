#pragma once

#include "figures.h"

namespace tralio {

/// Milliseconds to recognise a picture of 600x200, measured in turn: by our recogniser with its engines
/// loaded, and by the tesseract program with the same two languages. `folder` is where the picture is put.
struct Recognition {
    Samples ours;
    Samples tesseract;
};
[[nodiscard]] Recognition measureRecognition(const QString& folder, int rounds);

}  // namespace tralio
