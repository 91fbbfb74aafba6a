#pragma once

#include <QString>

namespace tralio {

/// The text with its shortcuts as they read on the keys of a PC: "⌘ ⇧ D" is "Super + Shift + D". For screen
/// readers, and for people who do not know the symbols.
[[nodiscard]] QString keysInWords(const QString& text);

/// Only the shortcuts of the text, in words, with commas between them; empty when there are none.
[[nodiscard]] QString shortcutsInWords(const QString& text);

}  // namespace tralio
