#pragma once

#include <optional>

#include "hotkeys/keys.h"

namespace tralio {

/// The X11 key code of a key. Absent for keys that a PC keyboard does not have.
[[nodiscard]] std::optional<quint8> x11KeyCode(KeyCode key);

/// The reverse. Also works for Qt's native scan codes on Wayland, which have the same numbers.
[[nodiscard]] std::optional<KeyCode> keyWithX11Code(quint32 x11KeyCode);

}  // namespace tralio
