#pragma once

#include <QByteArray>
#include <QString>

#include <array>

namespace tralio {

// How long the owner of a selection may take, in milliseconds. The user waits for a text.
inline constexpr int clipboardTextLimit = 250;
inline constexpr int clipboardPictureLimit = 5000;

// The formats of texts from other programs, under the names that X11 and Wayland share, best first.

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

/// Decodes a text in the encoding of its format. A leading U+FEFF stays: in a selection it is text, not a
/// byte order mark. `eightBit` is Latin-1, as X11 defines it, unless the bytes are valid UTF-8, which most
/// programs send. More than `longestTextBytes` bytes, where readers stop, give a text for which `isTooLong`
/// holds.
[[nodiscard]] QString decodeText(const QByteArray& bytes, TextFormat::Encoding encoding);

}  // namespace tralio
