#pragma once

#include <QString>

#include <optional>

class QMimeData;

namespace tralio {

class Pasteboard;

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

/// Where a text comes from that is inserted into an editor.
enum class TextOrigin { clipboard, selection, drag };

/// Where the toolkit has content from that it hands to an editor.
[[nodiscard]] TextOrigin originOf(const QMimeData& content);

/// Its text, or nothing. What is copied or selected is read by `pasteboard`, no more of it than is accepted;
/// the toolkit would read all that another program offers, whatever its size.
[[nodiscard]] std::optional<QString> textOf(
    const QMimeData& content, TextOrigin origin, Pasteboard& pasteboard);

}  // namespace tralio
