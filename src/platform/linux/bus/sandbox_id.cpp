#include "platform/linux/bus/sandbox_id.h"

#include <QList>

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// The beginning of a file that another program has made, and that may be no file at all.
QByteArray beginningOfFile(const QByteArray& path) {
    std::array<char, 8192> bytes{};
    const int file = open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (file < 0)
        return {};
    struct stat status {};
    const bool isFile = fstat(file, &status) == 0 && S_ISREG(status.st_mode);
    const ssize_t size = isFile ? read(file, bytes.data(), bytes.size()) : 0;
    close(file);
    return {bytes.data(), std::max<ssize_t>(size, 0)};
}

}  // namespace

QString sandboxId(qint32 processId) {
    const QByteArray root = "/proc/" + QByteArray::number(processId) + "/root";
    return sandboxId(root + "/.flatpak-info");
}

QString sandboxId(const QByteArray& infoPath) {
    bool isInApplication = false;
    const QByteArray info = beginningOfFile(infoPath);
    for (const QByteArray& line : info.split('\n'))
        if (line.startsWith('['))
            isInApplication = line.trimmed() == "[Application]";
        else if (isInApplication && line.startsWith("name="))
            return QString::fromUtf8(line.mid(5)).trimmed();
    return {};
}

}  // namespace tralio
