#pragma once

#include <QString>

namespace tralio {

/// The number of user-perceived characters (grapheme clusters) in `text`.
[[nodiscard]] qsizetype characterCount(QStringView text);

/// The first 30 user-perceived characters of `text`, or all of it: what a log line may show of a user's text.
[[nodiscard]] QString excerpt(QStringView text);

/// The text, or of a longer one about the first `longest` UTF-16 units, in whole code points, and an
/// ellipsis.
[[nodiscard]] QString shortened(const QString& text, qsizetype longest);

}  // namespace tralio
