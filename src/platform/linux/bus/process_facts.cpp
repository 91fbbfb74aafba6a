#include "platform/linux/bus/process_facts.h"

#include <QFile>

namespace tralio {

using namespace Qt::StringLiterals;

QString processName(qint32 processId) {
    QFile file(u"/proc/%1/comm"_s.arg(processId));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

bool isBusProxy(qint32 processId) {
    return processName(processId) == u"xdg-dbus-proxy";
}

}  // namespace tralio
