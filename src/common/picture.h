#pragma once

#include <QStringList>

#include <array>
#include <memory>

#include "common/memory_file.h"

namespace tralio {

/// A picture as the bytes of a file in any format. It is not decoded in this process: it may come from
/// anywhere, and decoders have bugs. Null for no picture.
using Picture = std::shared_ptr<const MemoryFile>;

/// In bytes. Readers stop here, and a larger picture is refused with an error message.
inline constexpr qint64 largestPicture = 256 << 20;

/// The MIME types of pictures to ask other programs for, best first: those that every recogniser decodes, and
/// of these the lossless ones, come before the others.
inline constexpr std::array pictureFormats{
    "image/png", "image/bmp", "image/jpeg", "image/webp", "image/tiff"};

/// The best of the offered types; empty if none is a picture.
[[nodiscard]] QString bestPictureFormat(const QStringList& offered);

}  // namespace tralio
