#include <QImage>
#include <qcorotask.h>

#include <sys/stat.h>

#include "platform/linux/capture/run_program.h"
#include "platform/portal_fixture.h"

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
    EXPECT_EQ(capture(wanted), 0);
    EXPECT_EQ(QImage(wanted).size(), QSize(20, 10));
    EXPECT_EQ(QFile::permissions(wanted) & ~(QFile::ReadUser | QFile::WriteUser),
        QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_FALSE(QFile::exists(desktop->picture));

    // A clock may be minutes behind; but nobody captured a picture of an hour ago for us.
    for (const auto& [minutes, isOurs] : {std::pair(9, true), std::pair(60, false)}) {
        ASSERT_TRUE(QFile::remove(wanted));
        QImage(20, 10, QImage::Format_RGB32).save(desktop->picture);
        QFile older(desktop->picture);
        ASSERT_TRUE(older.open(QIODevice::ReadWrite));
        const auto then = QDateTime::currentDateTime().addSecs(-60 * minutes);
        ASSERT_TRUE(older.setFileTime(then, QFileDevice::FileModificationTime));
        EXPECT_EQ(capture(wanted), 0);
        EXPECT_NE(QFile::exists(desktop->picture), isOurs) << minutes;
    }

    ASSERT_TRUE(QFile::remove(wanted) && QFile::remove(desktop->picture));
    ASSERT_EQ(mkfifo(QFile::encodeName(desktop->picture).constData(), 0600), 0);
    EXPECT_NE(capture(wanted), 0) << "it would have no end";
}

TEST_F(PortalTest, a_capture_that_is_cancelled_refused_cut_off_or_never_answered_leaves_no_file) {
    const QTemporaryDir folder;
    const QString wanted = folder.filePath(u"wanted.png"_s);
    startPortal();
    ASSERT_TRUE(startProgram());
    for (const uint cancelledOrRefused : {1U, 2U}) {
        desktop->responses[u"Screenshot"_s] = cancelledOrRefused;
        EXPECT_NE(capture(wanted), 0);
    }
    desktop->silentMethods = {u"Screenshot"_s};
    const auto neverAnswered = [&] {
        ASSERT_TRUE(isCalled(u"Screenshot"_s, 3));
        clock.advance(2min);
    };
    EXPECT_NE(capture(wanted, neverAnswered), 0);
    const auto cutOff = [&] {
        ASSERT_TRUE(isCalled(u"Screenshot"_s, 4));
        desktop.reset();
    };
    EXPECT_NE(capture(wanted, cutOff), 0);
    EXPECT_FALSE(QFile::exists(wanted));
}

ProgramResult shell(const QString& script, std::chrono::milliseconds limit = howeverLong) {
    return QCoro::waitFor(runProgram(u"sh"_s, {u"-c"_s, script}, limit));
}

TEST(HelperProgram, gives_status_and_output_and_whatever_goes_wrong_an_end) {
    const ProgramResult good = shell(u"echo drawn; exit 3"_s);
    EXPECT_EQ(good.status, 3);
    EXPECT_EQ(good.output, "drawn\n");
    EXPECT_EQ(shell(u"umask"_s).output, "0077\n") << "others could read what it writes";

    const DebugLogFile log;
    EXPECT_EQ(shell(u"echo drawn; echo ' the reason' >&2; exit 1"_s).output, "drawn\n");
    EXPECT_EQ(shell(u"kill -SEGV $$"_s).status, CaptureTool::notStarted);
    EXPECT_THAT(log.messages(),
        testing::ElementsAre(u"runProgram: sh ends with 1: the reason"_s, u"runProgram: sh has crashed"_s));
    EXPECT_EQ(shell(u"trap '' TERM; while :; do sleep 0.01; done"_s, std::chrono::milliseconds(20)).status,
        CaptureTool::notStarted)
        << "one that hangs, and does not want to end";
    EXPECT_EQ(
        QCoro::waitFor(runProgram(u"/nowhere/at-all"_s, {}, howeverLong)).status, CaptureTool::notStarted);
    EXPECT_TRUE(log.messages().last().startsWith(u"runProgram: /nowhere/at-all: "_s));
}

}  // namespace
}  // namespace tralio
