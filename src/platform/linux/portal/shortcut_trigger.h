#pragma once

#include <QString>

#include <optional>

namespace tralio {

/// A hot key in the words of the desktop portals ("LOGO+SHIFT+d"). `keyCode` is a virtual key code,
/// `modifiers` the hot-key mask. Keys are named as on a US keyboard. Absent for keys that portals have no
/// name for.
[[nodiscard]] std::optional<QString> shortcutTrigger(quint32 keyCode, quint32 modifiers);

}  // namespace tralio
