#pragma once

#include <QString>

namespace tralio {

/// Appends one line, stamped with the present UTC time, to /tmp/tralio_debug.log. Any failure is ignored.
/// Called from the main thread.
void debugLog(const QString& message);

/// Sends the lines of `debugLog` to another file; for tests, which must not write into the user's log.
void setDebugLogPath(const QString& path);

}  // namespace tralio
