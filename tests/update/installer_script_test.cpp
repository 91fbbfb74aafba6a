#include "update/installer_script.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include "support/files.h"
#include "support/run_to_end.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// Runs the script with an archive that holds no application, so that it has nothing to replace. The programs
/// that would reach out of the test's folder are replaced by ones that write down that they were called.
class InstallerScriptTest : public testing::Test {
protected:
    InstallerScriptTest() {
        for (const QString& program : {u"sleep"_s, u"killall"_s, u"open"_s, u"cp"_s, u"xattr"_s}) {
            write(u"bin/"_s + program,
                u"#!/bin/sh\necho %1 \"$@\" >> '%2'\n"_s.arg(program, folder.filePath(u"calls"_s)).toUtf8());
        }
        QDir(folder.path()).mkdir(u"tmp"_s);
    }

    void write(const QString& name, const QByteArray& content) const {
        writeFile(folder.filePath(name), content);
    }

    /// The calls of the replaced programs.
    QStringList run() const {
        write(u"script"_s, installerScript(folder.filePath(u"A b.zip"_s)).toUtf8());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"PATH"_s, folder.filePath(u"bin"_s) + u":/usr/bin:/bin"_s);
        environment.insert(u"TMPDIR"_s, folder.filePath(u"tmp"_s));
        QProcess bash;
        bash.setProcessEnvironment(environment);
        bash.start(u"/bin/bash"_s, {folder.filePath(u"script"_s)});
        EXPECT_TRUE(bash.waitForFinished());
        EXPECT_EQ(bash.exitCode(), 0);
        return QString::fromUtf8(contentOf(folder.filePath(u"calls"_s))).trimmed().split(u'\n');
    }

    void expectNothingLeft() const {
        EXPECT_FALSE(QFile::exists(folder.filePath(u"A b.zip"_s)));
        EXPECT_TRUE(QDir(folder.filePath(u"tmp"_s)).isEmpty());
    }

    QTemporaryDir folder;
};

TEST_F(InstallerScriptTest, what_is_no_archive_is_thrown_away_and_nothing_is_touched) {
    write(u"A b.zip"_s, "<html>not found</html>");
    EXPECT_EQ(run(), QStringList{u"sleep 1.2"_s});
    expectNothingLeft();
}

TEST_F(InstallerScriptTest, an_application_below_the_top_of_the_archive_does_not_count) {
    write(u"deep/Tralio.app/Contents/Info.plist"_s, "");
    write(u"Tralio.app"_s, "a file, not a bundle");
    runToEnd(QStringLiteral(CMAKE_PROGRAM),
        {u"-E"_s, u"tar"_s, u"cf"_s, u"A b.zip"_s, u"--format=zip"_s, u"deep"_s, u"Tralio.app"_s},
        folder.path());
    EXPECT_EQ(run(), QStringList{u"sleep 1.2"_s});
    expectNothingLeft();
}

}  // namespace
}  // namespace tralio
