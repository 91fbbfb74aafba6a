#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <array>

namespace tralio {

// The formats in which texts and pictures come from other programs, by the names that X11 and Wayland share,
// best first.

struct TextFormat {
    enum class Encoding { utf8, eightBit };

    const char* name;
    Encoding encoding;
};

inline constexpr std::array textFormats{
    TextFormat{"UTF8_STRING", TextFormat::Encoding::utf8},
    TextFormat{"text/plain;charset=utf-8", TextFormat::Encoding::utf8},
    TextFormat{"text/plain;charset=UTF-8", TextFormat::Encoding::utf8},
    TextFormat{"text/plain", TextFormat::Encoding::eightBit},
    TextFormat{"STRING", TextFormat::Encoding::eightBit},
    TextFormat{"TEXT", TextFormat::Encoding::eightBit},
};

/// A byte order mark stays: this is no file, and a text may begin with what is one there. What says no
/// encoding is Latin-1, as X11 has it, unless it is UTF-8, as most programs write. Of more than
/// `longestTextBytes`, which no reader goes on behind, only a text that is too long comes.
[[nodiscard]] QString decodeText(const QByteArray& bytes, TextFormat::Encoding encoding);

struct PictureFormat {
    const char* name;
    const char* decoder;
};

/// What keeps every pixel first.
inline constexpr std::array pictureFormats{
    PictureFormat{"image/png", "PNG"},
    PictureFormat{"image/tiff", "TIFF"},
    PictureFormat{"image/bmp", "BMP"},
    PictureFormat{"image/webp", "WEBP"},
    PictureFormat{"image/jpeg", "JPEG"},
};

/// Null when the bytes are no such picture, or the toolkit has no decoder for it.
[[nodiscard]] QImage decodePicture(const QByteArray& bytes, const PictureFormat& format);

}  // namespace tralio
