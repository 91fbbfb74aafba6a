#include "platform/linux/capture/run_program.h"

#include <QProcess>
#include <QStandardPaths>
#include <qcoroprocess.h>

#include <csignal>
#include <sys/prctl.h>
#include <sys/stat.h>

#include "common/debug_log.h"
#include "ocr/capture_tool.h"

namespace tralio {

using namespace Qt::StringLiterals;

constexpr qsizetype longestReason = 200;

QCoro::Task<ProgramResult> runProgram(
    QString program, QStringList arguments, std::chrono::milliseconds limit) {
    // WORKAROUND: Qt 6.4 loses a file descriptor with every program that it cannot start.
    if (QStandardPaths::findExecutable(program).isEmpty()) {
        debugLog(u"runProgram: %1: not found"_s.arg(program));
        co_return ProgramResult{CaptureTool::notStarted, {}};
    }
    QProcess process;
    // some programs read their input to the end before they begin
    process.setStandardInputFile(QProcess::nullDevice());
    process.setChildProcessModifier([] {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        umask(S_IRWXG | S_IRWXO);  // the output is a picture of the screen: only the user may read it
    });
    process.start(program, arguments);
    // Blocks only until the system has loaded the program, or has failed to.
    if (!process.waitForStarted()) {
        debugLog(u"runProgram: %1: %2"_s.arg(program, process.errorString()));
        co_return ProgramResult{CaptureTool::notStarted, {}};
    }
    if (!co_await qCoro(process).waitForFinished(limit)) {
        debugLog(u"runProgram: %1 does not end by itself"_s.arg(program));
        process.kill();
        co_await qCoro(process).waitForFinished(howeverLong);
    }
    const bool ended = process.exitStatus() == QProcess::NormalExit;
    if (!ended)
        debugLog(u"runProgram: %1 has crashed"_s.arg(program));
    else if (process.exitCode() != 0)
        debugLog(
            u"runProgram: %1 ends with %2: %3"_s.arg(program)
                .arg(process.exitCode())
                .arg(QString::fromLocal8Bit(process.readAllStandardError().trimmed()).left(longestReason)));
    co_return ProgramResult{
        ended ? process.exitCode() : CaptureTool::notStarted, process.readAllStandardOutput()};
}

}  // namespace tralio
