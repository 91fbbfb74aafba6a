#include "platform/linux/session/region_picker.h"

#include <QCoreApplication>
#include <QProcess>
#include <qcoroprocess.h>

#include <utility>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

}  // namespace

RegionPicker::RegionPicker(QString program) : m_program(std::move(program)) {}

QString RegionPicker::installedProgram() {
    return QCoreApplication::applicationDirPath() + u"/tralio-snip"_s;
}

QCoro::Task<qint32> RegionPicker::run(QString outputPath) {
    QProcess picker;
    picker.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    picker.setProgram(m_program);
    picker.setArguments({u"-i"_s, outputPath});
    const bool started = co_await qCoro(picker).start();
    if (!started)
        co_return notStarted;
    constexpr auto howeverLong = std::chrono::milliseconds(-1);
    co_await qCoro(picker).waitForFinished(howeverLong);
    co_return picker.exitStatus() == QProcess::NormalExit ? picker.exitCode() : notStarted;
}

}  // namespace tralio
