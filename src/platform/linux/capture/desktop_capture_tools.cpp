#include "platform/linux/capture/desktop_capture_tools.h"

#include <QStandardPaths>

#include "common/debug_log.h"
#include "platform/linux/capture/run_program.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// What takes its picture without the user has no reason to take longer.
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
    if (drawn.status != 0) {
        debugLog(u"GrimCapture: slurp ended with status %1"_s.arg(drawn.status));  // a cancel's is the same
        co_return drawn.status;
    }
    const QStringList arguments{u"-g"_s, QString::fromUtf8(drawn.output).trimmed(), outputPath};
    const ProgramResult picture = co_await runProgram(grim, arguments, whileItDraws);
    if (picture.status != 0)
        debugLog(u"GrimCapture: grim ended with status %1"_s.arg(picture.status));
    co_return picture.status;
}

bool SpectacleCapture::isInstalled() {
    return isProgram(spectacle);
}

QCoro::Task<qint32> SpectacleCapture::run(QString outputPath) {
    // By itself, and not by one that runs already, which would end this at once and draw later; in the
    // background and without a notification, a region, to a file.
    const QStringList arguments{u"-i"_s, u"-b"_s, u"-n"_s, u"-r"_s, u"-o"_s, outputPath};
    const ProgramResult picture = co_await runProgram(spectacle, arguments, whileTheUserDraws);
    if (picture.status != 0)
        debugLog(u"SpectacleCapture: spectacle ended with status %1"_s.arg(picture.status));
    co_return picture.status;
}

QCoro::Task<qint32> NoCapture::run(QString /*outputPath*/) {
    debugLog(u"NoCapture: this session lets no program capture the screen"_s);
    co_return notStarted;
}

}  // namespace tralio
