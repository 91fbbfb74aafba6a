#pragma once

#include "hotkeys/hot_key_platform.h"

namespace tralio {

/// The combination belongs to another program, or to another hot key of this one.
inline constexpr HotKeyStatus hotKeyExists = -9878;
/// No such key on this keyboard, or one that cannot be a hot key.
inline constexpr HotKeyStatus hotKeyInvalid = -9879;

/// Whether a combination may be taken from every other program: without Control, Option or Command only a
/// function key may, since people type with the rest.
[[nodiscard]] bool canBeHotKey(quint32 keyCode, quint32 modifiers);

}  // namespace tralio
