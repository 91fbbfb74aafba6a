#pragma once

#include <QString>

namespace tralio {

/// The number of user-perceived characters (grapheme clusters) in `text`.
[[nodiscard]] qsizetype characterCount(QStringView text);

/// The first 30 user-perceived characters of `text`, or all of it: the part of a user's text that may be
/// logged.
[[nodiscard]] QString excerpt(QStringView text);

/// The text itself, or if it is longer its first `longest` UTF-16 units, or one less so as not to split a
/// code point, and an ellipsis.
[[nodiscard]] QString shortened(const QString& text, qsizetype longest);

}  // namespace tralio
