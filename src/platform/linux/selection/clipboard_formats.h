#pragma once

#include <QByteArray>
#include <QString>

#include <array>

namespace tralio {

// How long the owner of a selection may take, in milliseconds: for a text the user waits.
inline constexpr int clipboardTextLimit = 250;
inline constexpr int clipboardPictureLimit = 5000;

// The formats in which texts come from other programs, by the names that X11 and Wayland share,
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

}  // namespace tralio
