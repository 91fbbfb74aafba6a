#pragma once

#include <QString>

class QMimeData;

namespace tralio {

/// What a drag or the clipboard of another program is good for here.
enum class ForeignContent {
    nothing,
    files,    ///< of this machine
    text,     ///< a web link counts as its address
    picture,  ///< ready to be shown, or as the bytes of a file
};

/// Files come before texts, since a text beside them is only their names. Texts come before pictures, which
/// are then the look of the text, unless the text is only the picture's address. Any content is possible,
/// also none: what another program offers may be empty, rubbish, or never come.
[[nodiscard]] ForeignContent foreignContent(const QMimeData& content);

/// As what Chromium gives a picture of a web page, beside its address: the bytes of a file in any format.
[[nodiscard]] QString fileContentFormat();

}  // namespace tralio
