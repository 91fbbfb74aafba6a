#pragma once

#include <QString>

#include <optional>

#include "hotkeys/keys.h"

namespace tralio {

/// A hot key in the words of the desktop portals ("LOGO+SHIFT+d"). Keys are named as on a US keyboard. Absent
/// for keys that portals have no name for.
[[nodiscard]] std::optional<QString> shortcutTrigger(const KeyCombination& combination);

}  // namespace tralio
