#pragma once

#include <QString>

namespace tralio {

/// The shell script that puts the application bundle in the archive at `zipPath` in the place of the
/// installed one, and starts it. It waits first for the running program to end, which it ends otherwise.
[[nodiscard]] QString installerScript(const QString& zipPath);

}  // namespace tralio
