#pragma once

#include <QtGlobal>

#include <optional>

namespace tralio {

/// The code of the key at the physical position that a virtual key code names: evdev's, which Wayland takes,
/// and X11's. Absent for keys that a PC keyboard does not have.
[[nodiscard]] std::optional<quint8> evdevKeyCode(quint32 virtualKeyCode);
[[nodiscard]] std::optional<quint8> x11KeyCode(quint32 virtualKeyCode);

/// The way back: the position of an X key code, which is also how the toolkit numbers keys on Wayland.
[[nodiscard]] std::optional<quint16> virtualKeyCode(quint32 x11KeyCode);

}  // namespace tralio
