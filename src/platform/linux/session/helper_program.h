#pragma once

#include <QByteArray>
#include <QStringList>
#include <qcorotask.h>

namespace tralio {

/// How another program ended that was run for us.
struct ProgramResult {
    qint32 status = 0;  ///< CaptureTool::notStarted when it could not be started, or crashed
    QByteArray output;
};

/// Runs a program to its end, however long that takes.
[[nodiscard]] QCoro::Task<ProgramResult> runProgram(QString program, QStringList arguments);

}  // namespace tralio
