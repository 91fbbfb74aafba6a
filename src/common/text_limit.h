#pragma once

#include <QString>

namespace tralio {

/// The longest text that is accepted, in Unicode code points.
inline constexpr qsizetype longestText = 200'000;

/// The most bytes that such a text takes in UTF-8. Readers stop after this, whatever else the other side
/// sends.
inline constexpr qsizetype longestTextBytes = 4 * longestText;

[[nodiscard]] bool isTooLong(QStringView text);

/// The error messages for a text that is too long: one to translate, and one that a server has returned.
[[nodiscard]] QString tooLongMessage(QStringView text);
[[nodiscard]] QString tooLongTranslationMessage(QStringView translation);

/// A text to represent one of which only the beginning was read. It is too long by one character, even when
/// trimmed.
[[nodiscard]] QString beginningOfLongText(QStringView beginning);

}  // namespace tralio
