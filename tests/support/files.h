#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

namespace tralio {

/// The content of a file; empty if there is no such file.
[[nodiscard]] inline QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Writes a file that its owner may read, write and execute, creating folders as needed. Returns its path.
inline QString writeFile(const QString& path, const QByteArray& content) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("A test's file cannot be written.");
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return path;
}

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
