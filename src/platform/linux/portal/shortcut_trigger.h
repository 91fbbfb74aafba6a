#pragma once

#include <QString>

#include <optional>

#include "hotkeys/keys.h"

namespace tralio {

/// A hot key in the notation of the desktop portals ("LOGO+SHIFT+d"). Keys are named as on a US keyboard.
/// Absent for keys without a name there.
[[nodiscard]] std::optional<QString> shortcutTrigger(const KeyCombination& combination);

}  // namespace tralio
