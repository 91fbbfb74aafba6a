#pragma once

#include <QString>

namespace tralio {

/// The application id of a sandboxed (Flatpak) process; empty for any other.
[[nodiscard]] QString sandboxId(qint32 processId);
/// The same, from the file in which the sandbox describes itself. Whoever runs in it may have put anything
/// there: what is no file is not waited for, and of a long one only the beginning is read.
[[nodiscard]] QString sandboxId(const QByteArray& infoPath);

}  // namespace tralio
