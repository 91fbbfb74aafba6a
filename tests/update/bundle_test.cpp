#include <unistd.h>

#include "platform/linux/bundle/bundle_installer.h"
#include "platform/linux/helpers/installation.h"
#include "support/ending.h"
#include "support/process_limits.h"
#include "update/info_plist.h"

namespace tralio {
namespace {

using testing::AllOf;
using testing::Ne;

/// A folder to put bundles and scripts in.
struct BundleTest : testing::Test {
    QString path(const QString& name) const { return folder.filePath(name); }

    QString write(const QString& name, const QString& content) const {
        return writeFile(path(name), content.toUtf8());
    }

    void writeInfo(const QString& bundle, const QString& executable) const {
        write(bundle + u"/Contents/Info.plist"_s,
            u"<plist><dict><key>CFBundleExecutable</key><string>%1</string></dict></plist>"_s.arg(
                executable));
    }

    /// Packs what lies in a folder of ours; the archive's name.
    QString zip(const QString& name, const QStringList& content, const QString& from = {}) const {
        runToEnd(QStringLiteral(CMAKE_PROGRAM),
            QStringList{u"-E"_s, u"tar"_s, u"cf"_s, path(name), u"--format=zip"_s} + content, path(from));
        return name;
    }

    /// How something fails, in words; empty when it does not.
    template <typename Operation>
    static QString faultOf(const Operation& operation) {
        try {
            operation();
        } catch (const LocalizedError& error) {
            return error.errorDescription();
        }
        return {};
    }

    static QString faultOf(QCoro::Task<> check) {
        const auto passes = [&]() -> QCoro::Task<bool> {
            co_await std::move(check);
            co_return true;
        };
        return endingOf(passes()).failure;
    }

    /// Writes a program that tells its session, and these words of the shell.
    QString writeTelling(const QString& name, const QString& words) const {
        return write(name,
            u"#!/bin/bash\nread -ra stat < /proc/$$/stat\necho ${stat[5]} "_s + words + u" > "_s +
                path(u"out"_s) + u'\n');
    }
    /// What it has told of itself, waited for: a session that is not ours, and these words.
    void expectTold(const QStringList& words) const {
        QByteArray content;
        EXPECT_TRUE(eventually([&] { return (content = contentOf(path(u"out"_s))).endsWith('\n'); }));
        const QStringList told = QString::fromUtf8(content).simplified().split(u' ');
        EXPECT_NE(told.value(0).toInt(), getsid(0));
        EXPECT_EQ(told.mid(1), words);
    }

    /// Runs `open` to its end; its exit status and what it complained about.
    std::pair<int, QString> open(const QStringList& arguments) const {
        QProcess process;
        process.start(QStringLiteral(OPEN_PROGRAM), arguments);
        EXPECT_TRUE(process.waitForFinished());
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardError())};
    }

    QTemporaryDir folder;
};

TEST_F(BundleTest, the_version_is_the_bundles_or_a_fixed_one) {
    const auto plist = [](const QString& entries) {
        return u"<?xml version=\"1.0\"?>\n<plist version=\"1.0\"><dict>%1</dict></plist>"_s.arg(entries);
    };
    const QString version = u"<key>CFBundleShortVersionString</key>"_s;
    const std::pair<QString, QString> cases[] = {
        {plist(version + u"<string>2.0 &amp; β</string>"_s), u"2.0 & β"_s},
        {plist(u"<!-- --><key>a</key><dict>%1<string>3</string></dict>%1 <string>4</string>"_s.arg(version)),
            u"4"_s},
        {plist(u"<key>a</key><string>CFBundleShortVersionString</string><key>b</key><string>5</string>"_s),
            u"1.0.9"_s},
        {plist(version + u"<real>2.0</real>"_s), u"1.0.9"_s},
        {u"<plist><array>%1<string>2.0</string></array></plist>"_s.arg(version), u"1.0.9"_s},
        {u"<plist><dict>%1<string>2.0"_s.arg(version), u"1.0.9"_s},
    };
    EXPECT_EQ(bundleVersion(path(u"Info.plist"_s)), u"1.0.9"_s) << "there is none";
    for (const auto& [content, expected] : cases)
        EXPECT_EQ(bundleVersion(write(u"Info.plist"_s, content)), expected) << qPrintable(content);
    EXPECT_EQ(bundleVersion(installation::infoPlist(QCoreApplication::applicationDirPath())),
        QStringLiteral(TRALIO_VERSION));
}

TEST_F(BundleTest, a_script_runs_in_a_session_of_its_own_and_finds_our_helpers_first) {
    EXPECT_EQ(installation::helperFolder(path(u"usr/bin"_s)), path(u"usr/libexec/tralio"_s));
    BundleInstaller({.programs = {}, .helpers = path(u"helpers"_s)})
        .run(writeTelling(u"script"_s, u"${PATH%%:*} $#"_s));
    expectTold({path(u"helpers"_s), u"0"_s});
}

TEST_F(BundleTest, a_missing_shell_and_somebody_elses_script_are_told) {
    const auto failure = [](const QString& shell, const QString& script) {
        return faultOf([&] { BundleInstaller({.programs = {}, .shell = shell}).run(script); });
    };
    const QString script = write(u"script"_s, u"exit"_s);
    EXPECT_TRUE(failure(path(u"bash"_s), script).contains(path(u"bash"_s)));
    write(u"bash"_s, u"#!/nowhere\n"_s);
    EXPECT_FALSE(failure(path(u"bash"_s), script).isEmpty());

    ASSERT_TRUE(QFile::link(script, path(u"link"_s)));
    EXPECT_TRUE(failure(u"/bin/bash"_s, path(u"link"_s)).contains(path(u"link"_s)));
    for (const QString& none : {path(u"missing"_s), folder.path()})
        EXPECT_TRUE(failure(u"/bin/bash"_s, none).contains(none)) << "nobody would hear of it afterwards";
    const OrdinaryUser user;
    EXPECT_FALSE(failure(u"/bin/bash"_s, u"/etc/passwd"_s).isEmpty());
}

TEST_F(BundleTest, only_the_program_of_the_bundle_may_be_replaced_and_the_distribution_updates_its_own) {
    for (const auto& [programs, expected] :
        {std::pair(u"/usr/bin"_s, true), std::pair(u"/usr/local/bin"_s, false),
            std::pair(u"/usrx/bin"_s, false), std::pair(u"/Applications/Tralio.app/Contents/MacOS"_s, false)})
        EXPECT_EQ(BundleInstaller({.programs = programs}).isPackaged(), expected) << qPrintable(programs);

    const auto obstacle = [](const BundleInstaller::Places& places) {
        return faultOf([&] { BundleInstaller(places).checkProgram(); });
    };
    const OrdinaryUser user;
    const QTemporaryDir own;
    const QString applications = own.filePath(u"Applications"_s);
    const QString bundle = applications + u"/Tralio.app"_s;
    BundleInstaller::Places places{.programs = own.filePath(u"elsewhere"_s), .bundle = bundle};
    EXPECT_TRUE(obstacle(places).contains(bundle)) << "there is none";
    ASSERT_TRUE(QDir().mkpath(bundle + u"/Contents/MacOS"_s) && QDir().mkpath(places.programs));
    EXPECT_TRUE(obstacle(places).contains(bundle)) << "the program runs from elsewhere";

    const QString link = own.filePath(u"link.app"_s);
    ASSERT_TRUE(QFile::link(bundle, link));
    places.programs = link + u"/Contents/MacOS"_s;
    EXPECT_EQ(obstacle(places), QString());
    places.unzip = u"no-such-unzip"_s;
    EXPECT_TRUE(obstacle(places).contains(places.unzip));
    places.unzip = u"unzip"_s;
    const auto readOnly = QFile::ReadOwner | QFile::ExeOwner;
    for (const QString& fixed : {applications, bundle, bundle + u"/Contents/MacOS"_s}) {
        ASSERT_TRUE(QFile::setPermissions(fixed, readOnly));
        EXPECT_TRUE(obstacle(places).contains(u"quyền"_s)) << qPrintable(fixed);
        ASSERT_TRUE(QFile::setPermissions(fixed, readOnly | QFile::WriteOwner));
    }
}

TEST_F(BundleTest, an_archive_counts_if_it_is_whole_and_has_the_bundle_in_it_and_nothing_else) {
    for (const QString& root : {u""_s, u"linked/"_s, u"dead/"_s}) {
        write(root + u"Tralio.app/Contents/Info.plist"_s, u"an application"_s);
        write(root + u"Tralio.app/Contents/MacOS/TralioApp"_s, u"its program"_s);
        const QString starter = root + u"Tralio.app/Contents/Helpers/open"_s;
        write(starter, u"what starts it"_s);
        ASSERT_TRUE(QFile::setPermissions(path(starter), QFile::ReadOwner | QFile::ExeOwner));
    }
    write(u"deep/Tralio.app/Contents/Info.plist"_s, u"too deep"_s);
    write(u"Other.app/Contents/Info.plist"_s, u"another"_s);
    ASSERT_TRUE(QFile::setPermissions(
        path(u"dead/Tralio.app/Contents/MacOS/TralioApp"_s), QFile::ReadOwner | QFile::WriteOwner));
    ASSERT_TRUE(QFile::link(u"/etc"_s, path(u"linked/Tralio.app/Contents/Resources"_s)));
    BundleInstaller installer({.programs = {},
        .largestContent = 1 << 20,
        .freeSpace = [](const QString&) { return qint64(1) << 40; }});
    const auto fault = [&](const QString& archive) { return faultOf(installer.checkArchive(path(archive))); };
    const QString whole = zip(u"whole.zip"_s, {u"Tralio.app"_s});
    EXPECT_EQ(fault(whole), QString());
    const QString notOnlyTheBundle = fault(zip(u"deep.zip"_s, {u"deep"_s}));
    EXPECT_FALSE(notOnlyTheBundle.isEmpty());
    for (const QStringList& content :
        {QStringList{u"Tralio.app/Contents/Info.plist"_s, u"Tralio.app/Contents/MacOS"_s},
            QStringList{u"Tralio.app/Contents/Helpers"_s, u"Tralio.app/Contents/MacOS"_s},
            QStringList{u"Tralio.app/Contents/Info.plist"_s, u"Tralio.app/Contents/Helpers"_s},
            QStringList{u"Tralio.app"_s, u"Other.app"_s}})
        EXPECT_EQ(fault(zip(u"other.zip"_s, content)), notOnlyTheBundle) << qPrintable(content.join(u' '));
    const QString link = fault(zip(u"link.zip"_s, {u"Tralio.app"_s}, u"linked"_s));
    EXPECT_TRUE(link.contains(u"link")) << qPrintable(link);
    EXPECT_TRUE(fault(zip(u"dead.zip"_s, {u"Tralio.app"_s}, u"dead"_s)).contains(u"quyền chạy"_s));
    for (const QString& full : {QDir::tempPath(), u"/Applications"_s}) {
        BundleInstaller cramped({.programs = {}, .freeSpace = [&full](const QString& folder) {
                                     return folder == full ? qint64(1 << 20) : qint64(1) << 40;
                                 }});
        EXPECT_TRUE(faultOf(cramped.checkArchive(path(whole))).contains(full));
    }

    // What no tool makes, put in place by hand.
    const auto faultOfChanged = [&](const QString& name, const QByteArray& from, const QByteArray& to) {
        QByteArray content = contentOf(path(name));
        EXPECT_TRUE(content.contains(from)) << qPrintable(name);
        writeFile(path(u"changed.zip"_s), content.replace(from, to));
        return fault(u"changed.zip"_s);
    };
    EXPECT_EQ(faultOfChanged(
                  u"link.zip"_s, QByteArray::fromHex("504b01021403"), QByteArray::fromHex("504b01021402")),
        link)
        << "of VMS, whose kinds are listed in other words";
    EXPECT_EQ(faultOfChanged(whole, "Tralio.app/Contents/Info.plist", "Tralio.app/../../../Info.plist"),
        notOnlyTheBundle);
    write(u"bomb/Tralio.app/a"_s, QString(2 << 20, u'0'));
    const QString bomb = faultOfChanged(zip(u"bomb.zip"_s, {u"Tralio.app"_s}, u"bomb"_s),
        QByteArray::fromHex("00002000"), QByteArray::fromHex("03000000"));
    EXPECT_TRUE(bomb.contains(u"quá lớn")) << qPrintable(bomb);
    BundleInstaller interrupted({.programs = {}, .unzip = u"kill $$; unzip"_s, .largestContent = 1 << 20});
    EXPECT_THAT(faultOf(interrupted.checkArchive(path(whole))), AllOf(Ne(QString()), Ne(bomb)));
    ASSERT_TRUE(runToEnd(u"unzip"_s, {u"-Zt"_s, path(u"changed.zip"_s)}).contains(" 3 bytes uncompressed"));

    QByteArray content = contentOf(path(whole));
    content[content.indexOf("Info.plist") + 12] ^= 1;
    for (const QByteArray& broken : {content, QByteArray("<html>not found</html>")}) {
        writeFile(path(u"broken.zip"_s), broken);
        EXPECT_THAT(fault(u"broken.zip"_s), AllOf(Ne(QString()), Ne(notOnlyTheBundle)));
    }
}

TEST_F(BundleTest, a_signature_is_told_from_one_of_another_file_or_key) {
    const auto sign = [](const QStringList& arguments) {
        return runToEnd(QStringLiteral(SIGN_PROGRAM), arguments).trimmed();
    };
    const QString key = QString::fromLatin1(sign({u"--new-key"_s, path(u"key.pem"_s)}));
    const QString otherKey = QString::fromLatin1(sign({u"--new-key"_s, path(u"other.pem"_s)}));
    ASSERT_EQ(key.size(), 64);
    write(u"update.zip"_s, u"an archive"_s);
    write(u"other.zip"_s, u"an archivE"_s);
    sign({path(u"update.zip"_s), path(u"key.pem"_s)});
    const QByteArray signature = contentOf(path(u"update.zip.sig"_s));

    const auto fault = [&](const QString& archive, const QByteArray& ofIt, const QString& publicKey,
                           const QString& verifier = QStringLiteral(VERIFY_PROGRAM)) {
        BundleInstaller installer({.programs = {}, .verifier = verifier});
        return faultOf(installer.checkSignature(path(archive), ofIt, publicKey));
    };
    EXPECT_EQ(fault(u"update.zip"_s, signature, key), QString());
    const QString wrong = fault(u"other.zip"_s, signature, key);
    EXPECT_FALSE(wrong.isEmpty());
    EXPECT_EQ(fault(u"update.zip"_s, signature, otherKey), wrong);
    EXPECT_EQ(fault(u"update.zip"_s, signature.first(63), key), wrong);
    EXPECT_EQ(fault(u"update.zip"_s, {}, key), wrong);
    // And what cannot be told is never a yes.
    for (const QString& noKey : {key.first(62), QString(), u"no digits"_s})
        EXPECT_FALSE(fault(u"update.zip"_s, signature, noKey).isEmpty());
    EXPECT_FALSE(fault(u"missing.zip"_s, signature, key).isEmpty());
    EXPECT_FALSE(fault(u"update.zip"_s, signature, key, path(u"missing"_s)).isEmpty());
}

TEST_F(BundleTest, open_leaves_the_program_that_the_bundle_names_to_itself_and_says_what_it_cannot_open) {
    writeInfo(u"A b.app"_s, u"Program"_s);
    writeTelling(u"A b.app/Contents/MacOS/Program"_s, u"${#PATH} $PWD $#"_s);
    qputenv("HOME", folder.path().toUtf8());
    qputenv("PATH", QFileInfo(QStringLiteral(OPEN_PROGRAM)).path().toUtf8() + ":/usr/bin:/bin");
    EXPECT_EQ(open({path(u"A b.app"_s)}), std::pair(0, QString()));
    expectTold({QString::number(qstrlen("/usr/bin:/bin")), folder.path(), u"0"_s});

    writeInfo(u"Gone.app"_s, u"Gone"_s);
    writeInfo(u"Sly.app"_s, u"../../out"_s);
    for (const QString& culprit : {u"Nowhere.app"_s, u"Sly.app"_s, u"Gone.app"_s}) {
        const auto [status, complaint] = open({path(culprit)});
        EXPECT_EQ(status, 1);
        EXPECT_TRUE(complaint.contains(path(culprit))) << qPrintable(complaint);
    }
    EXPECT_NE(open({}).first, 0);
}

}  // namespace
}  // namespace tralio
