#include "platform/linux/bus/sandbox_id.h"

#include <QDir>
#include <QSettings>

namespace tralio {

using namespace Qt::StringLiterals;

QString sandboxId(qint32 processId) {
    const QDir sandbox(u"/proc/%1/root"_s.arg(processId));
    const QSettings flatpak(sandbox.filePath(u".flatpak-info"_s), QSettings::IniFormat);
    return flatpak.value("Application/name").toString();
}

}  // namespace tralio
