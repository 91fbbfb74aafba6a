#pragma once

#include <QBuffer>
#include <QImage>

#include "common/picture.h"

namespace tralio {

/// The bytes of a picture file, as another program would give them.
[[nodiscard]] inline QByteArray fileOf(const QImage& image, const char* format = "PNG") {
    QByteArray bytes;
    QBuffer file(&bytes);
    if (!image.save(&file, format))
        qFatal("A test's picture cannot be encoded.");
    return bytes;
}

[[nodiscard]] inline Picture encoded(const QImage& image) {
    return std::make_shared<MemoryFile>(fileOf(image));
}

}  // namespace tralio
