#pragma once

#include <QString>

namespace tralio {

// What /proc says about another process of this user; empty or false if it says nothing.

/// The name of its program, truncated to 15 characters by the kernel.
[[nodiscard]] QString processName(qint32 processId);

/// Whether it is a proxy that forwards the bus messages of a sandboxed application, and so appears in its
/// place.
[[nodiscard]] bool isBusProxy(qint32 processId);

}  // namespace tralio
