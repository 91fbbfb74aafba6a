#include "platform/linux/portal/portal_capture.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <sys/stat.h>

#include "platform/portal_fixture.h"
#include "support/debug_log_file.h"

namespace tralio {
namespace {

TEST_F(PortalTest, a_picture_of_the_desktops_is_moved_to_where_it_is_wanted) {
    const QTemporaryDir folder;
    const QString wanted = folder.filePath(u"wanted.png"_s);
    startPortal([&](auto& told) {
        told.picture = folder.filePath(u"screenshot.jpg"_s);
        QImage(20, 10, QImage::Format_RGB32).save(told.picture);
    });
    ASSERT_TRUE(startProgram());
    PortalCapture tool(*portal);
    const auto capture = [&] {
        QFile::remove(wanted);
        std::optional<qint32> status;
        tool.run(wanted).then([&](qint32 value) { status = value; });
        EXPECT_TRUE(eventually([&] { return status.has_value(); }));
        return status;
    };
    EXPECT_EQ(capture(), 0);
    EXPECT_EQ(QImage(wanted).size(), QSize(20, 10));
    EXPECT_EQ(QFile::permissions(wanted) & ~(QFile::ReadUser | QFile::WriteUser),
        QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_FALSE(QFile::exists(desktop->picture));

    QImage(20, 10, QImage::Format_RGB32).save(desktop->picture);
    QFile older(desktop->picture);
    ASSERT_TRUE(older.open(QIODevice::ReadWrite));
    const auto anHourAgo = QDateTime::currentDateTime().addSecs(-3600);
    ASSERT_TRUE(older.setFileTime(anHourAgo, QFileDevice::FileModificationTime));
    EXPECT_EQ(capture(), 0);
    EXPECT_TRUE(QFile::exists(desktop->picture)) << "nobody captured that for us";

    ASSERT_TRUE(older.remove());
    ASSERT_EQ(mkfifo(QFile::encodeName(desktop->picture).constData(), 0600), 0);
    EXPECT_NE(capture(), 0) << "it would have no end";
}

TEST_F(PortalTest, a_capture_that_is_cancelled_refused_cut_off_or_never_answered_leaves_no_file) {
    const QTemporaryDir folder;
    const QString wanted = folder.filePath(u"wanted.png"_s);
    startPortal();
    ASSERT_TRUE(startProgram());
    PortalCapture tool(*portal);
    const auto run = [&](const std::function<void()>& meanwhile) {
        std::optional<qint32> status;
        tool.run(wanted).then([&](qint32 value) { status = value; });
        meanwhile();
        EXPECT_TRUE(eventually([&] { return status.has_value(); }));
        EXPECT_NE(status, 0);
        EXPECT_FALSE(QFile::exists(wanted));
    };
    for (const uint response : {1U, 2U}) {
        desktop->responses.insert(u"Screenshot"_s, response);
        run([] {});
    }
    desktop->silentMethods = {u"Screenshot"_s};
    run([&] {
        ASSERT_TRUE(eventually([&] { return desktop->calls.count(u"Screenshot"_s) == 3; }));
        clock.advance(2min);
    });
    run([&] {
        ASSERT_TRUE(eventually([&] { return desktop->calls.count(u"Screenshot"_s) == 4; }));
        desktop.reset();
    });
}

}  // namespace
}  // namespace tralio
