#include "update/staged_file.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <tuple>
#include <unistd.h>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

QString description(int error, const QString& path) {
    switch (error) {
        case ENOSPC:
        case EDQUOT:
            return u"Không còn đủ dung lượng trống để ghi %1."_s.arg(path);
        case EACCES:
        case EPERM:
        case EROFS:
            return u"Không có quyền ghi %1."_s.arg(path);
        case ENOENT:
        case ENOTDIR:
            return u"Không tìm thấy thư mục của %1."_s.arg(path);
        default:
            return u"Không ghi được %1 (%2)."_s.arg(path, QString::fromLocal8Bit(std::strerror(error)));
    }
}

}  // namespace

FileError FileError::fromErrno(int error, const QString& path) {
    return FileError(description(error, path));
}

StagedFile::StagedFile(const QString& folder) : m_file(QDir(folder).filePath(u"tralio-XXXXXX.part"_s)) {
    errno = 0;
    if (!m_file.open())
        throw FileError::fromErrno(errno, folder);
    // Asking for its name gives it one. Without, the file would have to be entered into the folder at the
    // end, and nothing would tell why it cannot be.
    std::ignore = m_file.fileName();
}

void StagedFile::write(const QByteArray& piece) {
    // Past the file object's buffer, which would tell of a full disk late, and without the reason.
    for (qsizetype done = 0; done < piece.size();) {
        const ssize_t written = ::write(m_file.handle(), piece.constData() + done, piece.size() - done);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            throw FileError::fromErrno(errno, m_file.fileName());
        done += written;
    }
    m_size += piece.size();
}

void StagedFile::moveTo(const QString& path) {
    if (std::rename(QFile::encodeName(m_file.fileName()).constData(), QFile::encodeName(path).constData()) !=
        0)
        throw FileError::fromErrno(errno, path);
    m_file.setAutoRemove(false);
}

}  // namespace tralio
