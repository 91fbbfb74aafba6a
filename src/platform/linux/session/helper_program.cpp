#include "platform/linux/session/helper_program.h"

#include <QProcess>
#include <qcoroprocess.h>

#include "ocr/capture_tool.h"

namespace tralio {

QCoro::Task<ProgramResult> runProgram(QString program, QStringList arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setStandardInputFile(QProcess::nullDevice());  // some read theirs to the end before they begin
    process.setProgram(program);
    process.setArguments(arguments);
    const bool started = co_await qCoro(process).start();
    if (!started)
        co_return ProgramResult{CaptureTool::notStarted, {}};
    constexpr auto howeverLong = std::chrono::milliseconds(-1);
    co_await qCoro(process).waitForFinished(howeverLong);
    const bool ended = process.exitStatus() == QProcess::NormalExit;
    co_return ProgramResult{ended ? process.exitCode() : CaptureTool::notStarted,
                            process.readAllStandardOutput()};
}

}  // namespace tralio
