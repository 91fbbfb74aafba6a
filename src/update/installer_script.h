#pragma once

#include <QString>

namespace tralio {

/// The shell script that replaces the installed application bundle by the one in the archive at `zipPath`,
/// and starts it. It first gives the running program time to end, and then kills it.
[[nodiscard]] QString installerScript(const QString& zipPath);

}  // namespace tralio
