#include "common/debug_log.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/debug_log_file.h"
#include "support/testing.h"

namespace tralio {
namespace {

TEST(DebugLogTest, a_log_that_cannot_be_written_is_ignored) {
    const DebugLogFile log;
    const QString elsewhere = log.path() + u".elsewhere"_s;

    writeFile(elsewhere, "");
    ASSERT_TRUE(QFile::link(elsewhere, log.path()));
    debugLog(u"through a link"_s);
    EXPECT_EQ(contentOf(elsewhere), QByteArray());

    ASSERT_TRUE(QFile::remove(log.path()));
    ASSERT_EQ(mkfifo(QFile::encodeName(log.path()).constData(), 0600), 0);
    debugLog(u"into a pipe without a reader"_s);
    const int reader = open(QFile::encodeName(log.path()).constData(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    debugLog(u"into somebody's pipe"_s);
    char byte = 0;
    EXPECT_EQ(read(reader, &byte, 1), 0);
    close(reader);

    const QString folder = log.path() + u".folder"_s;
    setDebugLogPath(folder + u"/log"_s);
    debugLog(u"nowhere"_s);
    ASSERT_TRUE(QDir().mkdir(folder));
    debugLog(u"before its folder vanishes"_s);
    ASSERT_TRUE(QDir(folder).removeRecursively());
    debugLog(u"nowhere"_s);
    EXPECT_FALSE(QFile::exists(folder));
    ASSERT_TRUE(QDir().mkdir(folder));
    debugLog(u"when it is there again"_s);
    EXPECT_EQ(contentOf(folder + u"/log"_s).count('\n'), 1);

    const DebugLogFile next;
    debugLog(u"and on"_s);
    EXPECT_EQ(next.messages(), QStringList(u"and on"_s));
}

TEST(DebugLogTest, lines_are_added_each_with_its_time_in_utc_and_only_the_user_may_read_them) {
    const DebugLogFile log;
    const auto before = QDateTime::currentDateTimeUtc().addMSecs(-1000);
    const QRegularExpression line(u"^\\[(\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d) \\+0000\\] .*\n$"_s);
    const auto isPrivate = [&log] {
        return (QFileInfo(log.path()).permissions() & (QFile::ReadGroup | QFile::ReadOther)) == 0;
    };
    debugLog(u"requested with text 'Tiếng Việt %1 😀'"_s);
    EXPECT_TRUE(isPrivate());
    const auto match = line.match(QString::fromUtf8(log.content()));
    ASSERT_TRUE(match.hasMatch()) << log.content().constData();
    const auto time = QDateTime::fromString(match.captured(1).replace(u' ', u'T') + u'Z', Qt::ISODate);
    EXPECT_TRUE(before <= time && time <= QDateTime::currentDateTimeUtc()) << log.content().constData();

    ASSERT_EQ(chmod(QFile::encodeName(log.path()).constData(), 0666), 0);
    debugLog(u"second"_s);
    EXPECT_TRUE(isPrivate());
    EXPECT_EQ(log.messages(), QStringList({u"requested with text 'Tiếng Việt %1 😀'"_s, u"second"_s}));
}

TEST(DebugLogTest, at_a_start_the_older_half_of_a_large_log_goes_by_whole_lines) {
    const DebugLogFile log;
    const auto fill = [&log](int lines) {
        QFile file(log.path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        for (int i = 0; i < lines; ++i)
            file.write(u"[2026-01-01 00:00:00 +0000] %1\n"_s.arg(i, 12, 10, QChar(u'0')).toUtf8());
    };
    for (const auto& [lines, atLeast, atMost] : {std::tuple(24'000, 24'000, 24'000),
             std::tuple(26'000, 12'998, 13'000), std::tuple(260'000, 16'248, 16'250)}) {
        fill(lines);
        capDebugLog();
        const QStringList kept = log.messages();
        EXPECT_GE(kept.size(), atLeast);
        EXPECT_LE(kept.size(), atMost);
        EXPECT_EQ(kept.first().toInt(), lines - kept.size()) << "a line is cut, or the newest are gone";
        EXPECT_EQ(kept.last().toInt(), lines - 1);
    }

    fill(26'000);
    const QString elsewhere = log.path() + u".elsewhere"_s;
    ASSERT_TRUE(QFile::rename(log.path(), elsewhere));
    ASSERT_TRUE(QFile::link(elsewhere, log.path()));
    const qint64 before = QFileInfo(elsewhere).size();
    capDebugLog();
    EXPECT_EQ(QFileInfo(elsewhere).size(), before) << "through a link";
}

}  // namespace
}  // namespace tralio
