#pragma once

#include <QString>

namespace tralio {

/// The text with its shortcuts written as on the keys of a PC: "⌘ ⇧ D" becomes "Super + Shift + D". For
/// screen readers, and for people who do not know the symbols.
[[nodiscard]] QString keysInWords(const QString& text);

/// Only the shortcuts of the text, in words, separated by commas; empty if there are none.
[[nodiscard]] QString shortcutsInWords(const QString& text);

}  // namespace tralio
