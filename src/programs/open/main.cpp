// `open PATH.app` starts the program of an application bundle, detached, as the command of that name does on
// the system that bundles come from.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>

#include <cstdio>

#include "update/info_plist.h"

namespace {

using namespace Qt::StringLiterals;

constexpr int notOpened = 1;
constexpr int wrongUsage = 64;

int fail(const QString& message, int status = notOpened) {
    std::fprintf(stderr, "open: %s\n", qUtf8Printable(message));
    return status;
}

/// The installer script prepends to PATH for this program only; the programs started here get the session's
/// PATH.
QProcessEnvironment sessionEnvironment() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    QStringList folders = environment.value(u"PATH"_s).split(u':');
    folders.removeAll(QCoreApplication::applicationDirPath());
    environment.insert(u"PATH"_s, folders.join(u':'));
    return environment;
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2)
        return fail(u"usage: open APPLICATION.app"_s, wrongUsage);

    const QDir bundle(QDir::cleanPath(QDir(arguments.at(1)).absolutePath()));
    const auto name = tralio::infoPlistText(bundle.filePath(u"Contents/Info.plist"_s), u"CFBundleExecutable");
    if (!name || name->isEmpty() || name->contains(u'/'))
        return fail(
            u"%1 is no application bundle: its Contents/Info.plist names no executable"_s.arg(bundle.path()));

    QProcess program;
    program.setProgram(bundle.filePath(u"Contents/MacOS/"_s + *name));
    program.setProcessEnvironment(sessionEnvironment());
    program.setWorkingDirectory(QDir::home().exists() ? QDir::homePath() : QDir::rootPath());
    program.setStandardInputFile(QProcess::nullDevice());
    program.setStandardOutputFile(QProcess::nullDevice());
    program.setStandardErrorFile(QProcess::nullDevice());
    if (!program.startDetached())
        return fail(u"%1 does not start: %2"_s.arg(program.program(), program.errorString()));
    return 0;
}
