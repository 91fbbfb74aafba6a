#include "platform/linux/capture/run_program.h"

#include <qcorotask.h>

#include "ocr/capture_tool.h"
#include "support/debug_log_file.h"
#include "support/testing.h"

namespace tralio {
namespace {

ProgramResult shell(const QString& script, std::chrono::milliseconds limit = howeverLong) {
    return QCoro::waitFor(runProgram(u"sh"_s, {u"-c"_s, script}, limit));
}

TEST(HelperProgram, gives_status_and_output_and_whatever_goes_wrong_an_end) {
    const ProgramResult good = shell(u"echo drawn; exit 3"_s);
    EXPECT_EQ(good.status, 3);
    EXPECT_EQ(good.output, "drawn\n");
    EXPECT_EQ(shell(u"umask"_s).output, "0077\n") << "others could read what it writes";

    const DebugLogFile log;
    EXPECT_EQ(shell(u"kill -SEGV $$"_s).status, CaptureTool::notStarted);
    EXPECT_THAT(log.messages(), testing::ElementsAre(u"runProgram: sh has crashed"_s));
    EXPECT_EQ(shell(u"trap '' TERM; while :; do sleep 0.01; done"_s, std::chrono::milliseconds(20)).status,
        CaptureTool::notStarted)
        << "one that hangs, and does not want to end";
    EXPECT_EQ(
        QCoro::waitFor(runProgram(u"/nowhere/at-all"_s, {}, howeverLong)).status, CaptureTool::notStarted);
    EXPECT_TRUE(log.messages().last().startsWith(u"runProgram: /nowhere/at-all: "_s));
}

}  // namespace
}  // namespace tralio
