#include <QApplication>

#include "common/debug_log.h"
#include "support/testing.h"

using namespace Qt::StringLiterals;

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir scratch;
    tralio::setDebugLogPath(scratch.filePath(u"debug.log"_s));
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
