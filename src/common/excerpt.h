#pragma once

#include <QString>

namespace tralio {

/// The number of user-perceived characters (grapheme clusters) in `text`.
[[nodiscard]] qsizetype characterCount(QStringView text);

/// The first 30 user-perceived characters of `text`, or all of it: what a log line may show of a user's text.
[[nodiscard]] QString excerpt(QStringView text);

}  // namespace tralio
