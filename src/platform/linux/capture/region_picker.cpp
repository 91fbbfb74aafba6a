#include "platform/linux/capture/region_picker.h"

#include <utility>

#include "platform/linux/capture/run_program.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

}  // namespace

RegionPicker::RegionPicker(QString program) : m_program(std::move(program)) {}

QCoro::Task<qint32> RegionPicker::run(QString outputPath) {
    const QStringList arguments{u"-i"_s, outputPath};
    const ProgramResult picker = co_await runProgram(m_program, arguments, howeverLong);
    co_return picker.status;
}

}  // namespace tralio
