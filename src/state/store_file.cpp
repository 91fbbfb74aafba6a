#include "state/store_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace tralio::store_file {
namespace {

using namespace Qt::StringLiterals;

const std::array suffixes = {u""_s, u"-wal"_s, u"-shm"_s, u"-journal"_s};

/// SQLite names the side files after the real file, not after a link to it.
QString withoutLinks(const QString& path) {
    const QString real = QFileInfo(path).canonicalFilePath();
    return real.isEmpty() ? path : real;
}

void createFolder(const QString& path) {
    const QFileInfo folder(path);
    if (path.isEmpty() || folder.exists())
        return;
    createFolder(folder.absolutePath());
    const QByteArray name = QFile::encodeName(path);
    // The umask may have removed permissions that are needed to go on.
    if (mkdir(name.constData(), S_IRWXU) == 0)
        chmod(name.constData(), S_IRWXU);
}

void createFile(const QString& path) {
    // A file that exists must not be opened here: closing it would release the locks that SQLite holds on it.
    if (QFileInfo::exists(path))
        return;
    const int file =
        open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0)
        return;
    fchmod(file, S_IRUSR | S_IWUSR);
    close(file);
}

bool isTaken(const QString& path) {
    return std::any_of(
        suffixes.begin(), suffixes.end(),
        [&](const QString& suffix) {
            const QFileInfo file(path + suffix);
            return file.exists() || file.isSymLink();
        });
}

}  // namespace

void createPrivately(const QString& path) {
    createFolder(QFileInfo(path).absolutePath());
    createFile(path);
    const QString file = withoutLinks(path);
    struct stat status {};
    if (stat(QFile::encodeName(file).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return;
    // Side files need the permissions of the file, or writing would fail because of them.
    for (const QString& suffix : suffixes)
        chmod(QFile::encodeName(file + suffix).constData(), status.st_mode & (S_IRUSR | S_IWUSR));
}

bool isAbsent(const QString& path) {
    struct stat status {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0) {
        // A link may lead to a disk that is not there now.
        const QFileInfo file(path);
        return (errno == ENOENT || errno == ENOTDIR) && !file.isSymLink() &&
            !QFileInfo(file.absolutePath()).isSymLink();
    }
    return S_ISREG(status.st_mode) && status.st_size == 0;
}

std::optional<QString> setAside(const QString& path) {
    const QString damaged = withoutLinks(path);
    QString aside;
    for (int number = 1; aside.isEmpty() || isTaken(aside); ++number)
        aside = u"%1.damaged-%2"_s.arg(damaged).arg(number);
    // QFile::rename never replaces a file.
    if (!QFile::rename(damaged, aside))
        return std::nullopt;
    for (const QString& suffix : suffixes)
        QFile::rename(damaged + suffix, aside + suffix);
    return QFileInfo(aside).fileName();
}

bool isShared(quint32 fileSystem) {
    switch (fileSystem) {
        case NFS_SUPER_MAGIC:
        case SMB_SUPER_MAGIC:
        case SMB2_SUPER_MAGIC:
        case CIFS_SUPER_MAGIC:
        case AFS_SUPER_MAGIC:
        case AFS_FS_MAGIC:
        case CEPH_SUPER_MAGIC:
        case CODA_SUPER_MAGIC:
        case NCP_SUPER_MAGIC:
        case OCFS2_SUPER_MAGIC:
        case V9FS_MAGIC:
        case FUSE_SUPER_MAGIC:  // sshfs is one; others are on this host, and only slower for it
            return true;
        default:
            return false;
    }
}

bool liesOnShared(const char* path) {
    struct statfs status {};
    return statfs(path, &status) == 0 && isShared(static_cast<quint32>(status.f_type));
}

}  // namespace tralio::store_file
