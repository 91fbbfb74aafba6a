#include "update/installer_script.h"

#include <QTemporaryDir>

#include "support/files.h"
#include "support/run_to_end.h"
#include "support/testing.h"

namespace tralio {
namespace {

TEST(InstallerScriptTest, an_archive_without_an_application_is_thrown_away_and_nothing_is_touched) {
    const QTemporaryDir folder;
    const auto path = [&folder](const QString& name) { return folder.filePath(name); };
    // The programs that would reach out of the test's folder only write down that they were called.
    for (const QString& program : {u"sleep"_s, u"killall"_s, u"open"_s, u"cp"_s, u"xattr"_s})
        writeFile(path(u"bin/"_s + program),
            u"#!/bin/sh\necho %1 \"$@\" >> '%2'\n"_s.arg(program, path(u"calls"_s)).toUtf8());
    QDir(folder.path()).mkdir(u"tmp"_s);
    const QString zip = path(u"A b.zip"_s);
    const QString script = writeFile(path(u"script"_s), installerScript(zip).toUtf8());
    // One below the top of the archive does not count, nor does a file of its name.
    writeFile(path(u"deep/Tralio.app/Contents/Info.plist"_s), "");
    writeFile(path(u"Tralio.app"_s), "a file, not a bundle");
    runToEnd(QStringLiteral(CMAKE_PROGRAM),
        {u"-E"_s, u"tar"_s, u"cf"_s, zip, u"--format=zip"_s, u"deep"_s, u"Tralio.app"_s}, folder.path());
    for (const QByteArray& archive : {QByteArray("<html>not found</html>"), contentOf(zip)}) {
        writeFile(zip, archive);
        runToEnd(u"env"_s,
            {u"PATH=%1:/usr/bin:/bin"_s.arg(path(u"bin"_s)), u"TMPDIR="_s + path(u"tmp"_s), u"/bin/bash"_s,
                script});
        EXPECT_EQ(contentOf(path(u"calls"_s)), "sleep 1.2\n");
        EXPECT_FALSE(QFile::exists(zip));
        EXPECT_TRUE(QDir(path(u"tmp"_s)).isEmpty());
        QFile::remove(path(u"calls"_s));
    }
}

}  // namespace
}  // namespace tralio
