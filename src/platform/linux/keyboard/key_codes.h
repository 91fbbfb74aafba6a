#pragma once

#include <optional>

#include "hotkeys/keys.h"

namespace tralio {

/// The code of a key in X11. Absent for keys that a PC keyboard does not have.
[[nodiscard]] std::optional<quint8> x11KeyCode(KeyCode key);

/// The way back, which also tells keys as the toolkit numbers them on Wayland.
[[nodiscard]] std::optional<KeyCode> keyWithX11Code(quint32 x11KeyCode);

}  // namespace tralio
