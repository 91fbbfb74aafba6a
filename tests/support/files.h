#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>

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

}  // namespace tralio
