#include "platform/linux/capture/region_picker.h"

#include <utility>

#include "common/debug_log.h"
#include "platform/linux/capture/run_program.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

}  // namespace

RegionPicker::RegionPicker(QString program) : m_program(std::move(program)) {}

QCoro::Task<qint32> RegionPicker::run(QString outputPath) {
    const QStringList arguments{u"-i"_s, outputPath};
    const ProgramResult picker = co_await runProgram(m_program, arguments, howeverLong);
    if (picker.status > 0)
        debugLog(u"RegionPicker: ended with status %1"_s.arg(picker.status));
    co_return picker.status;
}

}  // namespace tralio
