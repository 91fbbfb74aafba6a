#pragma once

#include <QString>

namespace tralio {

/// The longest text that is taken from anybody, in characters: code points of Unicode.
inline constexpr qsizetype longestText = 200'000;

/// What such a text takes in UTF-8 at the most. Readers stop behind it, whatever the other side goes on to
/// deliver.
inline constexpr qsizetype longestTextBytes = 4 * longestText;

[[nodiscard]] bool isTooLong(QStringView text);

/// What the user is told about a text that is too long: one to translate, or one that a server made of it.
[[nodiscard]] QString tooLongMessage(QStringView text);
[[nodiscard]] QString tooLongTranslationMessage(QStringView translation);

/// Stands for a text of which only the beginning was read. It is too long by one character, also once it is
/// trimmed.
[[nodiscard]] QString beginningOfLongText(QStringView beginning);

}  // namespace tralio
