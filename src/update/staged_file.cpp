#include "update/staged_file.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

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

StagedFile::StagedFile(QString folder) : m_folder(std::move(folder)) {
    m_file = open(QFile::encodeName(m_folder).constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
    if (m_file < 0 && (errno == EOPNOTSUPP || errno == EISDIR)) {
        m_name = freshName();
        m_file = open(m_name.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
    }
    if (m_file < 0)
        throw FileError::fromErrno(errno, m_folder);
}

StagedFile::~StagedFile() {
    close(m_file);
    if (!m_name.isEmpty())
        unlink(m_name.constData());
}

QByteArray StagedFile::freshName() const {
    const QString number = QString::number(QRandomGenerator::system()->generate64(), 36);
    return QFile::encodeName(QDir(m_folder).filePath(u"tralio-%1.part"_s.arg(number)));
}

void StagedFile::write(const QByteArray& piece) {
    for (qsizetype done = 0; done < piece.size();) {
        const ssize_t written =
            ::write(m_file, piece.constData() + done, static_cast<size_t>(piece.size() - done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            throw FileError::fromErrno(errno, m_folder);
        done += written;
    }
    m_size += piece.size();
}

QString StagedFile::path() const {
    return m_name.isEmpty() ? u"/proc/%1/fd/%2"_s.arg(getpid()).arg(m_file) : QFile::decodeName(m_name);
}

void StagedFile::moveTo(const QString& path) {
    if (m_name.isEmpty()) {
        // linkat() cannot replace a file of that name, but a rename can: link under a free name first.
        const QByteArray name = freshName();
        const QByteArray self = "/proc/self/fd/" + QByteArray::number(m_file);
        if (linkat(AT_FDCWD, self.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) != 0)
            throw FileError::fromErrno(errno, path);
        m_name = name;
    }
    if (std::rename(m_name.constData(), QFile::encodeName(path).constData()) != 0)
        throw FileError::fromErrno(errno, path);
    m_name.clear();
}

}  // namespace tralio
