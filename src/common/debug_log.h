#pragma once

#include <QString>

namespace tralio {

/// Appends one line, stamped with the present UTC time, to /tmp/tralio_debug.log. Any failure is ignored.
/// Called from the main thread.
void debugLog(const QString& message);

/// Takes the older half out of a log of more than 1 MB, as often as it takes. Called at a start. Any failure
/// is ignored.
void capDebugLog();

/// Sends the lines of `debugLog` to another file; for tests, which must not write into the user's log.
void setDebugLogPath(const QString& path);

}  // namespace tralio
