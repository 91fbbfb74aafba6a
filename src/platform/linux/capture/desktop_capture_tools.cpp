#include "platform/linux/capture/desktop_capture_tools.h"

#include <QStandardPaths>

#include "common/debug_log.h"
#include "platform/linux/capture/run_program.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// The limit for a tool that takes the picture without waiting for the user.
constexpr std::chrono::milliseconds whileItDraws = std::chrono::seconds(15);

const QString grim = u"grim"_s;
const QString slurp = u"slurp"_s;
const QString spectacle = u"spectacle"_s;

bool isProgram(const QString& name) {
    return !QStandardPaths::findExecutable(name).isEmpty();
}

}  // namespace

bool GrimCapture::isInstalled() {
    return isProgram(grim) && isProgram(slurp);
}

QCoro::Task<qint32> GrimCapture::run(QString outputPath) {
    const ProgramResult drawn = co_await runProgram(slurp, QStringList(), whileTheUserDraws);
    if (drawn.status != 0)
        co_return drawn.status;  // also after a cancel
    const QStringList arguments{u"-g"_s, QString::fromUtf8(drawn.output).trimmed(), outputPath};
    const ProgramResult picture = co_await runProgram(grim, arguments, whileItDraws);
    co_return picture.status;
}

bool SpectacleCapture::isInstalled() {
    return isProgram(spectacle);
}

QCoro::Task<qint32> SpectacleCapture::run(QString outputPath) {
    // -n: no notification; -b: in the background; -r: a region; -o: to a file. -i: a new instance, since with
    // one that is already running this process would end at once and the picture would come later.
    const QStringList arguments{u"-i"_s, u"-b"_s, u"-n"_s, u"-r"_s, u"-o"_s, outputPath};
    const ProgramResult picture = co_await runProgram(spectacle, arguments, whileTheUserDraws);
    co_return picture.status;
}

QCoro::Task<qint32> NoCapture::run(QString /*outputPath*/) {
    debugLog(u"NoCapture: this session lets no program capture the screen"_s);
    co_return notStarted;
}

}  // namespace tralio
