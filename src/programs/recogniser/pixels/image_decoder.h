#pragma once

#include <QImage>
#include <QString>

#include <variant>

#include "ocr/text_recognizer.h"

namespace tralio {

/// A bitmap of opaque colours with its device pixel ratio, or why there is none.
struct UndecodableImage {};
struct OversizedImage {
    QSize size;
};
using DecodedImage = std::variant<QImage, UndecodableImage, OversizedImage>;

/// Decodes a file (of an animation the first picture) and lays what is transparent on white, or on black
/// where the image itself is light. Runs in the helper process: decoders have faults.
[[nodiscard]] DecodedImage decodeImage(const QString& file);

}  // namespace tralio
