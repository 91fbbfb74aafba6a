
#include <fcntl.h>
#include <future>
#include <sys/stat.h>
#include <unistd.h>

#include "common/background.h"
#include "common/clock.h"
#include "common/debug_log.h"
#include "common/excerpt.h"
#include "common/text_limit.h"
#include "support/debug_log_file.h"

namespace tralio {
namespace {

TEST(SystemClockTest, a_call_comes_on_a_later_turn_unless_its_context_is_deleted) {
    SystemClock clock;
    QObject witness;
    auto context = std::make_unique<QObject>();
    int taken = 0;
    int ticks = 0;
    int zeroDelays = 0;
    clock.after(
        1ms, context.get(), [&] { ++taken; });
    clock.every(
        1ms, context.get(), [&] { ++taken; });
    clock.every(
        1ms, &witness, [&] { ++ticks; });
    clock.after(0ms, &witness, [&] { ++zeroDelays; });
    EXPECT_EQ(zeroDelays, 0);
    context.reset();
    EXPECT_TRUE(eventually([&] { return ticks >= 3; }));
    EXPECT_EQ(zeroDelays, 1);
    EXPECT_EQ(taken, 0);
}

TEST(BackgroundTest, jobs_that_hang_hold_no_others_up) {
    std::promise<void> release;
    const auto released = release.get_future().share();
    int done = 0;
    const auto run = [&done](std::function<int()> job) -> QCoro::Task<> {
        done += co_await inBackground(std::move(job));
    };
    const int hanging = QThread::idealThreadCount();
    for (int i = 0; i < hanging; ++i)
        run([released] {
            released.wait();
            return 1;
        });
    run([] { return 1; });
    EXPECT_TRUE(eventually([&] { return done == 1; }));
    release.set_value();
    EXPECT_TRUE(eventually([&] { return done == 1 + hanging; }));
}

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

TEST(ExcerptTest, what_a_user_perceives_as_one_character_counts_as_one) {
    const std::tuple<const char*, QString, qsizetype> cases[] = {
        {"nothing", u""_s, 0},
        {"decomposed letters", u"Tiếng Việt"_s.normalized(QString::NormalizationForm_D), 10},
        {"an emoji outside the basic plane", u"a😀b"_s, 3},
        {"a family joined from four emoji", u"👨‍👩‍👧‍👦"_s, 1},
        {"a flag made of two letters", u"🇻🇳"_s, 1},
        {"an emoji with a skin tone", u"👍🏽"_s, 1},
        {"Hangul written in its parts", u"한"_s.normalized(QString::NormalizationForm_D), 1},
        {"a line end of two code units", u"a\r\nb"_s, 3},
        {"families beside Thai", u"สวัสดีครับ "_s + u"👨‍👩‍👧"_s.repeated(3), 11},
        {"an emoji beside Devanagari", u"मेरा👍🏽\r\n"_s, 4},
        {"flags beside Khmer", u"កា🇰🇭🇻🇳"_s, 3},
        {"a letter that somebody put many accents on", u"a"_s + QString(5000, QChar(0x0301)), 1},
    };
    for (const auto& [what, text, count] : cases) {
        EXPECT_EQ(characterCount(text), count) << what;
        // Thirty of them fit, and the thirty-first does not.
        EXPECT_EQ(excerpt(text.repeated(2)), text.repeated(2)) << what;
        EXPECT_EQ(excerpt(u"x"_s.repeated(29) + u' ' + text), u"x"_s.repeated(29) + u' ') << what;
    }
    EXPECT_EQ(excerpt(u"ệ"_s.repeated(10'000'000)), u"ệ"_s.repeated(30));
}

TEST(TextLimitTest, what_was_not_read_to_its_end_is_too_long_whatever_trimming_takes_away) {
    for (const QString& read : {u"𠮷"_s.repeated(longestText + 9), QString(longestText, u' ') + u"word"_s,
             u" "_s, QString(longestText - 1, u'a') + u"𠮷 and more"_s}) {
        const QString text = beginningOfLongText(read).trimmed();
        EXPECT_TRUE(isTooLong(text));
        EXPECT_EQ(tooLongMessage(text), u"Văn bản quá dài (hơn 200.000 ký tự, tối đa 200.000)"_s);
    }
}

}  // namespace
}  // namespace tralio
