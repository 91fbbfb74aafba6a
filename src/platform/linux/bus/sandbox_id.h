#pragma once

#include <QString>

namespace tralio {

/// The application id of a sandboxed (Flatpak) process; empty for any other.
[[nodiscard]] QString sandboxId(qint32 processId);

}  // namespace tralio
