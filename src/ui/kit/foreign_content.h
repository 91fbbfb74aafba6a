#pragma once

#include <QString>

class QMimeData;

namespace tralio {

/// The kinds of content, in a drag or on the clipboard, that the program can use.
enum class ForeignContent {
    nothing,
    files,    ///< local files
    text,     ///< also the address of a web link
    picture,  ///< as pixels, or as the bytes of a picture file
};

/// Files take precedence over texts, since a text beside files is only their names. Texts take precedence
/// over pictures, which then show the text, unless the text is only the picture's address. Another program
/// may offer anything: nothing, rubbish, or content that never arrives.
[[nodiscard]] ForeignContent foreignContent(const QMimeData& content);

/// The MIME type under which Chromium offers a picture of a web page, beside its address: the bytes of a
/// picture file in any format.
[[nodiscard]] QString fileContentFormat();

}  // namespace tralio
