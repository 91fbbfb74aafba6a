#include "platform/linux/bundle/bundle_installer.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QStorageInfo>

#include <algorithm>
#include <array>
#include <chrono>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "common/localized_error.h"
#include "platform/linux/capture/run_program.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The limit for reading an archive, which is as large as an application.
constexpr auto archiveLimit = 60s;
/// In bytes. The listing of an archive's files may not be longer; a bundle has about ten files.
constexpr qsizetype longestListing = 1'000'000;

void checkScript(const QString& path) {
    struct stat entry {};
    if (lstat(QFile::encodeName(path).constData(), &entry) != 0)
        throw LocalizedError(u"Không ghi được %1."_s.arg(path));
    if (entry.st_uid != geteuid() || S_ISLNK(entry.st_mode))
        throw LocalizedError(u"%1 thuộc về người dùng khác nên không được chạy."_s.arg(path));
    if (!S_ISREG(entry.st_mode))
        throw LocalizedError(u"Không ghi được %1."_s.arg(path));
}

/// This program's environment with `folder` first in PATH.
QProcessEnvironment environmentWith(const QString& folder) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"PATH"_s, folder + u':' + environment.value(u"PATH"_s, u"/usr/bin:/bin"_s));
    return environment;
}

bool mayWriteIn(const QString& folder) {
    return faccessat(AT_FDCWD, QFile::encodeName(folder).constData(), W_OK, AT_EACCESS) == 0;
}

/// Whether a folder can be removed with its contents.
bool mayRemove(const QString& folder) {
    if (!mayWriteIn(QFileInfo(folder).path()) || !mayWriteIn(folder))
        return false;
    QDirIterator below(folder, QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks,
        QDirIterator::Subdirectories);
    while (below.hasNext())
        if (!mayWriteIn(below.next()))
            return false;
    return true;
}

/// The listing, if it is complete and the command succeeded, by the exit status at its end; else empty.
QByteArray wholeListing(const QByteArray& output) {
    constexpr QByteArrayView success = "=0\n";
    return output.size() <= longestListing && output.endsWith(success) ? output.chopped(success.size())
                                                                       : QByteArray();
}

/// Whether all of these paths inside an archive are in the one bundle at its top, and what starts it again
/// is among them.
bool lieInBundle(const QByteArray& paths) {
    const QList<QByteArray> lines = paths.trimmed().split('\n');
    constexpr std::array needed{"Tralio.app/Contents/MacOS/TralioApp", "Tralio.app/Contents/Info.plist",
        "Tralio.app/Contents/Helpers/open"};
    const auto isThere = [&](const char* path) { return lines.contains(path); };
    return std::ranges::all_of(needed, isThere) &&
        std::all_of(lines.begin(), lines.end(), [](const QByteArray& path) {
            return path.startsWith("Tralio.app/") && !('/' + path + '/').contains("/../") &&
                !path.contains('\\');
        });
}

/// Whether all lines of a listing, each of which begins with a file's kind and permissions, are plain files
/// (also those that were packed without a kind) or folders. Archives from other systems may have links, and
/// other letters for them.
bool areFilesAndFolders(const QByteArray& listing) {
    const QList<QByteArray> lines = listing.trimmed().split('\n');
    return std::all_of(lines.begin(), lines.end(), [](const QByteArray& line) {
        return !line.isEmpty() && QByteArrayView("-d?").contains(line.front());
    });
}

/// Whether the owner may execute every file of a listing that is in the bundle's folder of programs.
bool mayProgramsRun(const QByteArray& listing) {
    const QList<QByteArray> lines = listing.trimmed().split('\n');
    return std::all_of(lines.begin(), lines.end(), [](const QByteArray& line) {
        const bool isProgram = !line.startsWith('d') &&
            (line.contains(" Tralio.app/Contents/MacOS/") || line.contains(" Tralio.app/Contents/Helpers/"));
        return !isProgram || line.mid(3, 1) == "x";
    });
}

}  // namespace

BundleInstaller::BundleInstaller(Places places) : m_places(std::move(places)) {}

bool BundleInstaller::isPackaged() const {
    // The Filesystem Hierarchy Standard reserves /usr for the distribution, except /usr/local.
    const QString folder = QDir::cleanPath(m_places.programs) + u'/';
    return folder.startsWith(u"/usr/") && !folder.startsWith(u"/usr/local/");
}

void BundleInstaller::checkProgram() const {
    const QString own = QFileInfo(m_places.programs).canonicalFilePath();
    if (own.isEmpty() || own != QFileInfo(m_places.bundle + u"/Contents/MacOS"_s).canonicalFilePath())
        throw LocalizedError(
            u"Bản Tralio này không chạy từ %1 nên không thể tự thay thế."_s.arg(m_places.bundle));
    if (!mayRemove(m_places.bundle))
        throw LocalizedError(u"Không có quyền thay thế %1."_s.arg(m_places.bundle));
    if (QStandardPaths::findExecutable(m_places.unzip).isEmpty())
        throw LocalizedError(u"Không tìm thấy chương trình %1."_s.arg(m_places.unzip));
}

QCoro::Task<> BundleInstaller::checkArchive(QString zipPath) {
    // The argument lists are variables. WORKAROUND: gcc 12 does not compile a braced list of arguments inside
    // a coroutine. The content is measured by unpacking it, since unzip does not enforce the sizes that the
    // archive states.
    const QStringList measure{u"-c"_s,
        u"%1 -p \"$0\" | head -c %2 | wc -c"_s.arg(m_places.unzip).arg(m_places.largestContent + 1), zipPath};
    const QStringList test{u"-tqq"_s, zipPath};
    const auto list = [&](const QString& how, const QString& which) {
        return QStringList{u"-c"_s,
            u"{ %1 %2 \"$0\" %3; echo \"=$?\"; } | head -c %4"_s.arg(m_places.unzip, how, which)
                .arg(longestListing + 1),
            zipPath};
    };
    const QStringList names = list(u"-Z1"_s, {});
    const QStringList kinds = list(u"-Zs"_s, u"'*'"_s);  // the pattern suppresses the header and the summary
    const ProgramResult measured = co_await runProgram(u"/bin/sh"_s, measure, archiveLimit);
    if (measured.status != 0)
        throw LocalizedError(u"Không bung thử được file cập nhật."_s);
    const qint64 content = measured.output.trimmed().toLongLong();
    if (content > m_places.largestContent)
        throw LocalizedError(
            u"File cập nhật bung ra quá lớn (tối đa %1 MB)."_s.arg(m_places.largestContent >> 20));
    const ProgramResult tested = co_await runProgram(m_places.unzip, test, archiveLimit);
    if (tested.status != 0)
        throw LocalizedError(u"File cập nhật bị hỏng hoặc không phải là file zip."_s);
    const ProgramResult named = co_await runProgram(u"/bin/sh"_s, names, archiveLimit);
    if (!lieInBundle(wholeListing(named.output)))
        throw LocalizedError(u"File cập nhật không chứa duy nhất ứng dụng Tralio.app đầy đủ."_s);
    const ProgramResult listed = co_await runProgram(u"/bin/sh"_s, kinds, archiveLimit);
    if (!areFilesAndFolders(wholeListing(listed.output)))
        throw LocalizedError(u"File cập nhật chứa liên kết (link) nên không được cài."_s);
    if (!mayProgramsRun(wholeListing(listed.output)))
        throw LocalizedError(u"Chương trình trong file cập nhật không có quyền chạy."_s);
    checkRoom(content);
}

qint64 BundleInstaller::availableIn(const QString& folder) {
    return QStorageInfo(folder).bytesAvailable();
}

void BundleInstaller::checkRoom(qint64 content) const {
    // The script unpacks into one folder and copies to another, and checks the result of neither step.
    const qint64 needed = content + content / 10 + (1 << 20);  // files occupy whole blocks
    const QString unpacked = QDir::tempPath();
    const QString installed = QFileInfo(m_places.bundle).path();
    const bool areOne = QStorageInfo(unpacked).device() == QStorageInfo(installed).device();
    for (const QString& folder : {unpacked, installed})
        if (m_places.freeSpace(folder) < (areOne ? 2 * needed : needed))
            throw LocalizedError(u"Không đủ dung lượng trống trong %1."_s.arg(folder));
}

QCoro::Task<> BundleInstaller::checkSignature(QString zipPath, QByteArray signature, QString publicKey) {
    const QStringList arguments{zipPath, QString::fromLatin1(signature.toHex()), publicKey};
    const ProgramResult verified = co_await runProgram(m_places.verifier, arguments, archiveLimit);
    if (verified.status == 1)
        throw LocalizedError(u"Chữ ký của file cập nhật không đúng, file có thể đã bị thay đổi."_s);
    if (verified.status != 0)
        throw LocalizedError(u"Không kiểm tra được chữ ký của file cập nhật."_s);
}

void BundleInstaller::run(const QString& scriptPath) {
    checkScript(scriptPath);
    QProcess shell;
    shell.setProgram(m_places.shell);
    shell.setArguments({scriptPath});
    shell.setProcessEnvironment(environmentWith(m_places.helpers));
    if (shell.startDetached())
        return;
    if (!QFileInfo::exists(m_places.shell))
        throw LocalizedError(u"Không tìm thấy chương trình %1."_s.arg(m_places.shell));
    throw LocalizedError(
        u"Chương trình %1 không khởi động được (%2)."_s.arg(m_places.shell, shell.errorString()));
}

}  // namespace tralio
