#include "common/debug_log.h"

#include <QDateTime>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

QByteArray& logPath() {
    static QByteArray path = "/tmp/tralio_debug.log"_ba;
    return path;
}

/// The log is in /tmp, where everybody may write: the file must not be another user's link, and a pipe must
/// not block.
constexpr int safely = O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
constexpr qint64 cap = 1'000'000;

bool isOwnFile(int file, struct stat& status) {
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid();
}

}  // namespace

void capDebugLog() {
    QFile log;
    const int file = open(logPath().constData(), O_RDWR | safely);
    if (file < 0)
        return;
    struct stat status {};
    if (!isOwnFile(file, status) || !log.open(file, QIODevice::ReadWrite, QFile::AutoCloseHandle)) {
        close(file);
        return;
    }
    qint64 kept = status.st_size;
    while (kept > cap)
        kept /= 2;
    if (kept == status.st_size)
        return;
    log.seek(status.st_size - kept);
    log.readLine();  // cut off at its beginning
    const QByteArray newer = log.readAll();
    log.seek(0);
    if (log.write(newer) == newer.size() && log.flush())
        log.resize(newer.size());
}

void setDebugLogPath(const QString& path) {
    logPath() = QFile::encodeName(path);
}

void debugLog(const QString& message) {
    const QString time = QDateTime::currentDateTimeUtc().toString(u"yyyy-MM-dd hh:mm:ss"_s);
    const QByteArray line = u"[%1 +0000] %2\n"_s.arg(time, message).toUtf8();

    // The lines contain excerpts of the user's texts, so only the user may read the file.
    constexpr int flags = O_WRONLY | safely;
    int file = open(logPath().constData(), flags | O_APPEND);
    if (file < 0)
        file = open(logPath().constData(), flags | O_CREAT | O_TRUNC, 0600);
    if (file < 0)
        return;
    struct stat status {};
    if (isOwnFile(file, status) && fchmod(file, S_IRUSR | S_IWUSR) == 0) [[maybe_unused]]
        const auto written = write(file, line.constData(), static_cast<size_t>(line.size()));
    close(file);
}

}  // namespace tralio
