#pragma once

#include <QString>

#include <optional>

namespace tralio {

// What the system tells of another process of this user; empty or false where it tells nothing.

/// The name of its program, shortened to 15 characters.
[[nodiscard]] QString processName(qint32 processId);

/// Whether it is the other end of a terminal: what terminals are, whatever they call themselves. Absent where
/// its files are hidden, as those of xterm are, which runs with another group's rights.
[[nodiscard]] std::optional<bool> servesTerminal(qint32 processId);

/// Whether it passes on what a sandboxed application says on a bus, and so stands there in its place.
[[nodiscard]] bool isBusProxy(qint32 processId);

}  // namespace tralio
