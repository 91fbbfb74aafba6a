#pragma once

#include <QString>

namespace tralio {

/// Appends one line with the current UTC time to /tmp/tralio_debug.log. Errors are ignored. Called from the
/// main thread.
void debugLog(const QString& message);

/// Removes the older half of a log of more than 1 MB, repeatedly if necessary. Called at the start. Errors
/// are ignored.
void capDebugLog();

/// Redirects `debugLog` to another file; for tests, which must not write into the user's log.
void setDebugLogPath(const QString& path);

}  // namespace tralio
