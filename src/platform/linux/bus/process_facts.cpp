#include "platform/linux/bus/process_facts.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace tralio {

using namespace Qt::StringLiterals;

QString processName(qint32 processId) {
    QFile file(u"/proc/%1/comm"_s.arg(processId));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

std::optional<bool> servesTerminal(qint32 processId) {
    const QDir files(u"/proc/%1/fd"_s.arg(processId));
    const QStringList names = files.entryList(QDir::Files | QDir::Dirs | QDir::System | QDir::NoDotAndDotDot);
    if (names.isEmpty())
        return std::nullopt;
    return std::any_of(names.begin(), names.end(), [&](const QString& name) {
        const QString target = QFile::symLinkTarget(files.filePath(name));
        return target == u"/dev/ptmx" || target == u"/dev/pts/ptmx";
    });
}

bool isBusProxy(qint32 processId) {
    return processName(processId) == u"xdg-dbus-proxy";
}

}  // namespace tralio
