#include "platform/linux/bundle/bundle_installer.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>

#include <algorithm>
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

/// For reading an archive that is as large as an application.
constexpr auto archiveLimit = 60s;

bool isSomebodyElses(const QString& path) {
    struct stat entry {};
    if (lstat(QFile::encodeName(path).constData(), &entry) != 0)
        return false;
    return entry.st_uid != geteuid() || S_ISLNK(entry.st_mode);
}

/// The program's environment, with `folder` as the first place to look for programs.
QProcessEnvironment environmentWith(const QString& folder) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"PATH"_s, folder + u':' + environment.value(u"PATH"_s, u"/usr/bin:/bin"_s));
    return environment;
}

bool mayWriteIn(const QString& folder) {
    return faccessat(AT_FDCWD, QFile::encodeName(folder).constData(), W_OK, AT_EACCESS) == 0;
}

/// Whether all of these paths inside an archive lie in the one bundle at its top.
bool lieInBundle(const QByteArray& paths) {
    const QList<QByteArray> lines = paths.trimmed().split('\n');
    return std::all_of(lines.begin(), lines.end(), [](const QByteArray& path) {
        return path.startsWith("Tralio.app/") && !('/' + path + '/').contains("/../") && !path.contains('\\');
    });
}

/// Whether one of the lines of a listing, which begin with the kind and the rights of a file, is of a link.
bool holdsLink(const QByteArray& listing) {
    return ('\n' + listing).contains("\nl");
}

}  // namespace

BundleInstaller::BundleInstaller(Places places) : m_places(std::move(places)) {}

bool BundleInstaller::isPackaged() const {
    // The file system's standard leaves all of /usr but this to the distribution.
    const QString folder = QDir::cleanPath(m_places.programs) + u'/';
    return folder.startsWith(u"/usr/") && !folder.startsWith(u"/usr/local/");
}

void BundleInstaller::checkProgram() const {
    const QString own = QFileInfo(m_places.programs).canonicalFilePath();
    if (own.isEmpty() || own != QFileInfo(m_places.bundle + u"/Contents/MacOS"_s).canonicalFilePath())
        throw LocalizedError(
            u"Bản Tralio này không chạy từ %1 nên không thể tự thay thế."_s.arg(m_places.bundle));
    if (!mayWriteIn(QFileInfo(m_places.bundle).path()))
        throw LocalizedError(u"Không có quyền thay thế %1."_s.arg(m_places.bundle));
    if (QStandardPaths::findExecutable(m_places.unzip).isEmpty())
        throw LocalizedError(u"Không tìm thấy chương trình %1."_s.arg(m_places.unzip));
}

QCoro::Task<> BundleInstaller::checkArchive(QString zipPath) {
    // WORKAROUND: gcc 12 does not compile a list of arguments inside a coroutine.
    // What the archive says of its sizes, unzip does not hold it to.
    const QStringList measure{u"-c"_s,
        u"%1 -p \"$0\" | head -c %2 | wc -c"_s.arg(m_places.unzip).arg(m_places.largestContent + 1), zipPath};
    const QStringList test{u"-tqq"_s, zipPath};
    const QStringList names{u"-Z1"_s, zipPath};
    const QStringList kinds{u"-Zs"_s, zipPath};
    const ProgramResult measured = co_await runProgram(u"/bin/sh"_s, measure, archiveLimit);
    if (measured.status != 0 || measured.output.trimmed().toLongLong() > m_places.largestContent)
        throw LocalizedError(
            u"File cập nhật bung ra quá lớn (tối đa %1 MB)."_s.arg(m_places.largestContent >> 20));
    const ProgramResult tested = co_await runProgram(m_places.unzip, test, archiveLimit);
    if (tested.status != 0)
        throw LocalizedError(u"File cập nhật bị hỏng hoặc không phải là file zip."_s);
    const ProgramResult named = co_await runProgram(m_places.unzip, names, archiveLimit);
    if (!lieInBundle(named.output))
        throw LocalizedError(u"File cập nhật không chứa duy nhất ứng dụng Tralio.app."_s);
    const ProgramResult listed = co_await runProgram(m_places.unzip, kinds, archiveLimit);
    if (holdsLink(listed.output))
        throw LocalizedError(u"File cập nhật chứa liên kết (link) nên không được cài."_s);
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
    if (isSomebodyElses(scriptPath))
        throw LocalizedError(u"%1 thuộc về người dùng khác nên không được chạy."_s.arg(scriptPath));
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
