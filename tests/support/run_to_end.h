#pragma once

#include <QProcess>

namespace tralio {

/// Runs a program that the tests need to its end, and returns its output. If it fails, the test program is
/// aborted.
inline QByteArray runToEnd(const QString& program, const QStringList& arguments, const QString& folder = {},
    const QByteArray& input = {}) {
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("%s fails: %s", qUtf8Printable(program), process.readAllStandardError().constData());
    return process.readAllStandardOutput();
}

}  // namespace tralio
