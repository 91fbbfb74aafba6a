#pragma once

#include <QString>

namespace tralio {

// What the system tells of another process of this user; empty or false where it tells nothing.

/// The name of its program, shortened to 15 characters.
[[nodiscard]] QString processName(qint32 processId);

/// Whether it passes on what a sandboxed application says on a bus, and so stands there in its place.
[[nodiscard]] bool isBusProxy(qint32 processId);

}  // namespace tralio
