#include "platform/linux/bundle/installer_runner.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>

#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "common/localized_error.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

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

}  // namespace

InstallerRunner::InstallerRunner(QString helperFolder, QString shell)
    : m_helperFolder(std::move(helperFolder)), m_shell(std::move(shell)) {}

QString InstallerRunner::installedHelpers(const QString& executableFolder) {
    const QDir folder(executableFolder);
    const QString inBundle = QDir::cleanPath(folder.filePath(u"../Helpers"_s));
    return QFileInfo::exists(inBundle) ? inBundle : QDir::cleanPath(folder.filePath(u"../libexec/tralio"_s));
}

void InstallerRunner::run(const QString& path) const {
    if (isSomebodyElses(path))
        throw LocalizedError(u"%1 thuộc về người dùng khác nên không được chạy."_s.arg(path));
    QProcess shell;
    shell.setProgram(m_shell);
    shell.setArguments({path});
    shell.setProcessEnvironment(environmentWith(m_helperFolder));
    if (shell.startDetached())
        return;
    if (!QFileInfo::exists(m_shell))
        throw LocalizedError(u"Không tìm thấy chương trình %1."_s.arg(m_shell));
    throw LocalizedError(u"Chương trình %1 không khởi động được (%2)."_s.arg(m_shell, shell.errorString()));
}

}  // namespace tralio
