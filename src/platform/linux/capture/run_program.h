#pragma once

#include <QByteArray>
#include <QStringList>
#include <qcorotask.h>

#include <chrono>

namespace tralio {

/// How a program that was run for us ended.
struct ProgramResult {
    qint32 status = 0;  ///< CaptureTool::notStarted when it could not be started, crashed or took too long
    QByteArray output;
};

/// The limit for a program that waits for the user: the user may have left, and its overlay must not stay on
/// the screen for ever.
constexpr std::chrono::milliseconds whileTheUserDraws = std::chrono::minutes(2);
constexpr std::chrono::milliseconds howeverLong(-1);

/// Runs a program to its end. It is killed after `limit`, or when this program ends.
[[nodiscard]] QCoro::Task<ProgramResult> runProgram(
    QString program, QStringList arguments, std::chrono::milliseconds limit);

}  // namespace tralio
