#pragma once

#include <QtGlobal>

#include <optional>

namespace tralio {

/// The X key code of the key at the physical position that a virtual key code names. Absent for keys that a
/// PC keyboard does not have.
[[nodiscard]] std::optional<quint8> x11KeyCode(quint32 virtualKeyCode);

/// The way back: the position of an X key code, which is also how the toolkit numbers keys on Wayland.
[[nodiscard]] std::optional<quint16> virtualKeyCode(quint32 x11KeyCode);

}  // namespace tralio
