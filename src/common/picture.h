#pragma once

#include <QStringList>

#include <array>
#include <memory>

#include "common/memory_file.h"

namespace tralio {

/// A picture as the bytes of a file, of whatever format. Nobody in this process takes them apart: they come
/// from anywhere, and decoders have faults. Null where there is none.
using Picture = std::shared_ptr<const MemoryFile>;

/// In bytes. Readers stop here, and a larger picture is refused with an error message.
inline constexpr qint64 largestPicture = 256 << 20;

/// The formats that other programs offer, by their MIME types: first those that every recogniser decodes, and
/// of these what keeps every pixel.
inline constexpr std::array pictureFormats{
    "image/png", "image/bmp", "image/jpeg", "image/webp", "image/tiff"};

/// The best of what is offered; empty where there is no picture.
[[nodiscard]] QString bestPictureFormat(const QStringList& offered);

}  // namespace tralio
