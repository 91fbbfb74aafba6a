#pragma once

#include <QByteArray>
#include <QStringList>
#include <qcorotask.h>

#include <chrono>

namespace tralio {

/// How another program ended that was run for us.
struct ProgramResult {
    qint32 status = 0;  ///< CaptureTool::notStarted when it could not be started, crashed or took too long
    QByteArray output;
};

/// What a program on the screen waits for is the user, who may have gone; what it shows must not stay for
/// ever.
constexpr std::chrono::milliseconds whileTheUserDraws = std::chrono::minutes(2);
constexpr std::chrono::milliseconds howeverLong(-1);

/// Runs a program to its end, which comes after `limit` at the latest, and when we end ourselves.
[[nodiscard]] QCoro::Task<ProgramResult> runProgram(
    QString program, QStringList arguments, std::chrono::milliseconds limit);

}  // namespace tralio
