#include "support/debug_log_file.h"
#include "support/process_limits.h"
#include "update/installer_script.h"
#include "update/update_test_support.h"

namespace tralio {
namespace {

using Delivery = StandInReply::Delivery;

struct UpdateInstallTest : UpdateTest {
    UpdateInstallTest() { begin(); }

    /// An offer stands in the program, set up in another way if need be.
    template <typename Change = void (*)(UpdateService::Host&)>
    void begin(const Change& change = [](UpdateService::Host&) {}) {
        restart(change);
        service->updateInfo = offer(u" 1.0.10"_s);
        service->isUpdateAvailable = true;
    }

    QStringList filesInFolder() const { return QDir(folder.path()).entryList(QDir::Files); }

    /// Installs to the end and gives the last status.
    QString install() {
        service->startAutoUpdate();
        EXPECT_TRUE(eventually([this] { return !service->isUpdating() || events.contains(u"terminate"_s); }));
        return service->statusMessage().value_or(QString());
    }

    /// Expects an installation to fail with a text that begins so, and to leave the offer for another
    /// attempt.
    void expectFailure(const QString& text) {
        EXPECT_TRUE(install().startsWith(text)) << qPrintable(*service->statusMessage());
        EXPECT_FALSE(service->statusMessage()->contains(u"Base URL"));
        EXPECT_FALSE(service->isUpdating());
        EXPECT_TRUE(service->isUpdateAvailable());
        EXPECT_FALSE(events.contains(u"terminate"_s));
    }

    const QString zip = pathOf(u"Tralio-Update.zip"_s);
    const QString script = pathOf(u"tralio_updater.sh"_s);
};

TEST_F(UpdateInstallTest, the_archive_is_handed_to_the_installer_and_the_program_ends) {
    const DebugLogFile log;
    writeFile(zip, "an older archive");
    const QByteArray archive(20 * 1024 * 1024, 'z');  // more than a manifest may have
    server.replies(StandInReply::withBody(200, archive));

    EXPECT_EQ(install(), u"Đang cài đặt và khởi động lại..."_s);
    EXPECT_THAT(noted.limits, ElementsAre(60s));
    EXPECT_EQ(installer.scripts, QStringList(script));
    EXPECT_EQ(events, QStringList(u"terminate"_s));
    EXPECT_TRUE(service->isUpdating());
    EXPECT_EQ(service->downloadProgress(), 1);
    EXPECT_TRUE(contentOf(zip) == archive);
    EXPECT_TRUE(contentOf(script).startsWith("#!")) << "the script is not there when it is run";
    EXPECT_EQ(filesInFolder().size(), 2);
    EXPECT_EQ(log.messages().filter(u"the signature of the archive is not checked"_s).size(), 1);
    EXPECT_EQ(server.requests().last().header("Accept-Encoding"), "identity")
        << "its size could not be told from that of the transfer";
}

TEST_F(UpdateInstallTest, whatever_the_server_sends_counts_also_elsewhere_and_in_the_place_of_a_folder) {
    ASSERT_TRUE(QDir().mkpath(zip + u"/inside"_s) && QDir().mkpath(script + u"/inside"_s));
    const QByteArray reply = "HTTP/1.1 503 No\r\n\r\nno zip at all";
    StandInReply moved = StandInReply::redirect(302, address(u"/moved"_s).toLatin1());
    moved.body = "not the archive";
    server.repliesBy([&](const StandInModel::Request& request) {
        return request.target == "/Tralio.zip"
            ? moved
            : StandInReply::withBody(0, reply).delivered(Delivery::withoutStatus);
    });
    // Another user, whom only root can feign, may put links where the folders inside are.
    const QByteArray inTheWay = QFile::encodeName(zip);
    if (geteuid() == 0) {
        ASSERT_EQ(chown(inTheWay.constData(), nobody, gid_t(-1)), 0);
        expectFailure(u"Lỗi khi lưu file cập nhật: Không ghi được "_s + zip);
        ASSERT_EQ(chown(inTheWay.constData(), 0, gid_t(-1)), 0);
    }
    EXPECT_EQ(install(), u"Đang cài đặt và khởi động lại..."_s);
    EXPECT_EQ(contentOf(zip), "no zip at all");
    EXPECT_THAT(filesInFolder(), ElementsAre(u"Tralio-Update.zip"_s, u"tralio_updater.sh"_s));
    EXPECT_EQ(service->downloadProgress(), 0) << "of a length that nobody tells";
}

TEST_F(UpdateInstallTest, progress_is_told_as_the_pieces_come_and_nothing_else_begins_meanwhile) {
    server.replies(StandInReply::withBody(200, "four").delivered(Delivery::trickled));
    service->downloadProgress = 1;
    service->startAutoUpdate();
    EXPECT_TRUE(service->isUpdating());
    EXPECT_EQ(service->downloadProgress(), 0);
    EXPECT_EQ(service->statusMessage(), u"Đang tải bản cập nhật v 1.0.10..."_s);
    ASSERT_TRUE(eventually([this] { return !server.requests().isEmpty(); }));
    for (const double progress : {0.25, 0.5, 0.75}) {
        server.sendOneByte();
        EXPECT_TRUE(eventually([&] { return service->downloadProgress() == progress; }));
    }
    service->startAutoUpdate();
    service->checkForUpdates(true);
    EXPECT_FALSE(service->isChecking());
    EXPECT_EQ(service->downloadProgress(), 0.75);
    EXPECT_EQ(service->statusMessage(), u"Đang tải bản cập nhật v 1.0.10..."_s);
    server.sendTheRest();
    EXPECT_TRUE(eventually([this] { return events.contains(u"terminate"_s); }));
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(UpdateInstallTest, an_archive_comes_from_an_address_by_https_or_not_at_all) {
    std::optional<AppUpdateInfo> info;
    for (const QString& none : {u""_s, u"http://[half"_s, u"https://update.test/a b.zip"_s, u"unused"_s}) {
        service->updateInfo = info;
        service->startAutoUpdate();
        EXPECT_FALSE(service->isUpdating()) << qPrintable(none);
        info = AppUpdateInfo{u"2"_s, {}, none, std::nullopt};
    }
    EXPECT_EQ(service->statusMessage(), std::nullopt);
    for (const QString& insecure : {u"file:///tmp/Tralio.zip"_s, u"ftp://127.0.0.1/Tralio.zip"_s,
             u"Tralio.zip"_s, u"http://127.0.0.1.example.com/Tralio.zip"_s}) {
        AppUpdateInfo info = offer(u"1.0.10"_s);
        info.downloadUrl = insecure;
        service->updateInfo = info;
        expectFailure(u"Lỗi tải bản cập nhật: Địa chỉ tải về không dùng kết nối bảo mật (https)."_s);
    }
    begin([](auto& host) { host.takesFromLoopback = false; });
    expectFailure(u"Lỗi tải bản cập nhật: Địa chỉ tải về"_s);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(UpdateInstallTest, an_archive_that_is_too_large_is_given_up_announced_or_not) {
    const QByteArray announced = "HTTP/1.1 200 OK\r\nContent-Length: 500000001\r\n\r\nzip";
    server.replies(StandInReply::withBody(0, announced).delivered(Delivery::withoutStatus));
    expectFailure(u"Lỗi tải bản cập nhật: File cập nhật quá lớn (hơn 500 MB)."_s);

    begin([](auto& host) { host.largestArchive = 1'000'000; });
    const QByteArray endless = "HTTP/1.1 200 OK\r\n\r\n" + QByteArray(1'000'001, 'z');
    server.replies(StandInReply::withBody(0, endless).delivered(Delivery::withoutStatus));
    expectFailure(u"Lỗi tải bản cập nhật: File cập nhật quá lớn (hơn 1 MB)."_s);
    EXPECT_TRUE(filesInFolder().isEmpty());
}

TEST_F(UpdateInstallTest, with_a_key_an_archive_needs_its_signature_before_anything_closes) {
    const DebugLogFile log;
    begin([](auto& host) { host.publicKey = u"key"_s; });
    const QByteArray signature(64, 's');
    StandInReply reply = StandInReply::withBody(404, signature);
    server.repliesBy([&](const StandInModel::Request& request) {
        return request.target == "/Tralio.zip.sig" ? reply : StandInReply::withBody(200, "archive");
    });
    expectFailure(u"Lỗi tải bản cập nhật: Máy chủ không có chữ ký"_s);
    reply = StandInReply::withBody(200, signature + 's');
    expectFailure(u"Lỗi tải bản cập nhật: Máy chủ không có chữ ký"_s);
    EXPECT_EQ(installer.checkedSignature, QString());

    AppUpdateInfo escaped = offer(u"1.0.10"_s);
    escaped.downloadUrl = address(u"/Tralio%20x.zip"_s);
    service->updateInfo = escaped;
    expectFailure(u"Lỗi tải bản cập nhật: Máy chủ không có chữ ký"_s);
    EXPECT_EQ(server.requests().last().target, "/Tralio%20x.zip.sig");
    service->updateInfo = offer(u"1.0.10"_s);

    reply = StandInReply::withBody(200, signature);
    installer.signatureFault = u"chữ ký sai"_s;
    expectFailure(u"Không thể chạy tiến trình cập nhật: chữ ký sai"_s);
    EXPECT_EQ(installer.checkedSignature, u"archive "_s + QString::fromLatin1(signature) + u" key"_s);
    EXPECT_EQ(installer.checkedArchive, QString()) << "nobody takes an unsigned one apart";
    EXPECT_TRUE(filesInFolder().isEmpty());

    installer.signatureFault.reset();
    EXPECT_EQ(install(), u"Đang cài đặt và khởi động lại..."_s);
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(UpdateInstallTest, a_download_that_does_not_come_to_its_end_leaves_nothing_behind) {
    const QByteArray halfOfIt = "HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\nhalf";
    const StandInReply broken[] = {
        StandInReply::withBody(0, halfOfIt).delivered(Delivery::withoutStatus),
        StandInReply::withBody(0, "no HTTP at all\n").delivered(Delivery::withoutStatus),
        StandInReply::redirect(302, "gopher://127.0.0.1/"),
    };
    for (const StandInReply& reply : broken) {
        server.replies(reply);
        expectFailure(u"Lỗi tải bản cập nhật: "_s);
        EXPECT_TRUE(filesInFolder().isEmpty());
    }
    server.replies(StandInReply::withBody(200, QByteArray(30 * 1024 * 1024, 'z')));
    {
        const FileSizeLimit fullDisk(10 * 1024 * 1024);
        expectFailure(u"Lỗi tải bản cập nhật: "_s);
        EXPECT_GT(service->downloadProgress(), 0);
        EXPECT_LT(service->downloadProgress(), 1);
        EXPECT_TRUE(filesInFolder().isEmpty());
    }
    server.refuseConnections();
    expectFailure(u"Lỗi tải bản cập nhật: "_s);
    EXPECT_TRUE(events.isEmpty());
}

TEST_F(UpdateInstallTest, a_folder_that_takes_no_file_is_told_with_what_could_not_be_done) {
    const OrdinaryUser user;
    const QTemporaryDir own;
    begin([&own](auto& host) { host.temporaryFolder = own.path(); });
    const auto setWritable = [&own](bool writable) {
        const auto read = QFile::ReadOwner | QFile::ExeOwner;
        ASSERT_TRUE(QFile::setPermissions(own.path(), writable ? read | QFile::WriteOwner : read));
    };

    setWritable(false);
    expectFailure(u"Lỗi tải bản cập nhật: Không có quyền ghi "_s + own.path());
    setWritable(true);
    server.repliesBy([&setWritable](const StandInModel::Request&) {
        setWritable(false);
        return StandInReply::withBody(200, "zip");
    });
    expectFailure(u"Lỗi khi lưu file cập nhật: Không có quyền ghi "_s + own.path());
    EXPECT_TRUE(events.isEmpty());
    setWritable(true);
}

TEST_F(UpdateInstallTest, whatever_stands_in_the_way_of_an_installation_is_told_and_the_program_goes_on) {
    const QString fault = u"không có bash"_s;
    for (auto* const obstacle : {&installer.programFault, &installer.archiveFault, &installer.startFault}) {
        *obstacle = fault;
        expectFailure(u"Không thể chạy tiến trình cập nhật: "_s + fault);
        *obstacle = std::nullopt;
        EXPECT_FALSE(QFile::exists(zip));
    }
    EXPECT_EQ(server.requests().size(), 2) << "a program that cannot be replaced fetched an archive";
    EXPECT_EQ(installer.scripts.size(), 1);
    EXPECT_EQ(install(), u"Đang cài đặt và khởi động lại..."_s);
}

TEST_F(UpdateInstallTest, a_program_that_ends_leaves_nothing_of_what_it_downloads_or_checks) {
    server.replies(StandInReply::withBody(200, "zip").delivered(Delivery::trickled));
    service->startAutoUpdate();
    ASSERT_TRUE(eventually([this] { return !server.requests().isEmpty(); }));
    server.sendOneByte();
    ASSERT_TRUE(eventually([this] { return service->downloadProgress() > 0; }));
    EXPECT_TRUE(filesInFolder().isEmpty()) << "a program that a signal ends cannot tidy up";
    service.reset();
    EXPECT_TRUE(eventually([this] { return server.openConnections() == 0; }));

    begin();
    server.replies(StandInReply::withBody(200, "zip"));
    installer.checking = std::make_shared<QPromise<void>>();
    installer.checking->start();
    service->startAutoUpdate();
    ASSERT_TRUE(eventually([this] { return !installer.checkedArchive.isEmpty(); }));
    EXPECT_EQ(contentOf(installer.checkedArchive), "zip");
    EXPECT_FALSE(QFile::exists(zip)) << "the script of another session would unpack it";
    service.reset();
    EXPECT_THAT(filesInFolder(), IsEmpty());
    installer.checking->finish();
    EXPECT_TRUE(nextTurn());
    EXPECT_THAT(installer.scripts, IsEmpty());
    EXPECT_TRUE(events.isEmpty());
}

TEST_F(UpdateInstallTest, the_script_throws_an_archive_without_an_application_away_and_touches_nothing) {
    // The programs that would reach out of the test's folder only write down that they were called.
    const QString calls = pathOf(u"calls"_s);
    for (const QString& program : {u"sleep"_s, u"killall"_s, u"open"_s, u"cp"_s, u"xattr"_s})
        writeFile(pathOf(u"bin/"_s + program),
            u"#!/bin/sh\necho %1 \"$@\" >> '%2'\n"_s.arg(program, calls).toUtf8());
    QDir(folder.path()).mkdir(u"tmp"_s);
    const QString archive = pathOf(u"A b.zip"_s);
    writeFile(script, installerScript(archive).toUtf8());
    // One below the top of the archive does not count, nor does a file of its name.
    writeFile(pathOf(u"deep/Tralio.app/Contents/Info.plist"_s), {});
    writeFile(pathOf(u"Tralio.app"_s), "a file, not a bundle");
    runToEnd(QStringLiteral(CMAKE_PROGRAM),
        {u"-E"_s, u"tar"_s, u"cf"_s, archive, u"--format=zip"_s, u"deep"_s, u"Tralio.app"_s}, folder.path());
    for (const QByteArray& content : {QByteArray("<html>not found</html>"), contentOf(archive)}) {
        writeFile(archive, content);
        runToEnd(u"env"_s,
            {u"PATH=%1:/usr/bin:/bin"_s.arg(pathOf(u"bin"_s)), u"TMPDIR="_s + pathOf(u"tmp"_s),
                u"/bin/bash"_s, script});
        EXPECT_EQ(contentOf(calls), "sleep 1.2\n");
        EXPECT_FALSE(QFile::exists(archive));
        EXPECT_TRUE(QDir(pathOf(u"tmp"_s)).isEmpty());
        QFile::remove(calls);
    }
}

}  // namespace
}  // namespace tralio
