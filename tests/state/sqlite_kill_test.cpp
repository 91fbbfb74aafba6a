#include <array>
#include <csignal>
#include <random>
#include <sys/wait.h>

#include "state/sqlite_store_test.h"

namespace tralio {
namespace {

const QString key = u"key"_s;

/// A value that carries its number, large enough that the log is carried over into the file every few dozen
/// writes, so that some kills fall into that too.
QByteArray numbered(int number) {
    return QByteArray::number(number).leftJustified(20'000 + number % 7 * 10'000);
}

/// Forks a process that writes values one after the other and acknowledges each into a pipe, until killed.
pid_t startWriter(const QString& path, int first, int acknowledgements) {
    const pid_t process = fork();
    if (process != 0)
        return process;
    SqliteKeyValueStore store(path);
    for (int number = first;; ++number) {
        store.setValue(key, numbered(number));
        if (write(acknowledgements, &number, sizeof number) != sizeof number)
            _exit(1);
    }
}

using SqliteKillTest = SqliteStoreTest;

TEST_F(SqliteKillTest, no_acknowledged_value_is_lost_when_the_process_is_killed) {
    std::mt19937 random;  // NOLINT: where the kill falls is up to the scheduler anyway
    const auto upTo = [&](int most) { return std::uniform_int_distribution(0, most)(random); };
    int next = 0;
    int acknowledged = 0;
    for (int round = 0; round < 60; ++round) {
        std::optional<int> last;
        std::array<int, 2> ends{};
        ASSERT_EQ(pipe(ends.data()), 0);
        const pid_t writer = startWriter(path(), next, ends[1]);
        ASSERT_GT(writer, 0);
        close(ends[1]);
        const auto isAcknowledged = [&] {
            int number = 0;
            if (::read(ends[0], &number, sizeof number) != sizeof number)
                return false;
            EXPECT_EQ(number, next++);
            last = number;
            ++acknowledged;
            return true;
        };
        // Every third kill comes early, while the store is being opened or created.
        for (int count = round % 3 == 0 ? 0 : upTo(60); count > 0; --count)
            ASSERT_TRUE(isAcknowledged());
        usleep(static_cast<useconds_t>(upTo(3000)));
        int status = 0;
        ASSERT_TRUE(kill(writer, SIGKILL) == 0 && waitpid(writer, &status, 0) == writer);
        ASSERT_TRUE(WIFSIGNALED(status));
        while (isAcknowledged()) {
        }
        close(ends[0]);

        if (QFile::exists(path()))  // the kill may have come before it was created
            EXPECT_EQ(OtherConnection(path()).query("PRAGMA quick_check"), "ok");
        const auto value = SqliteKeyValueStore(path()).value(key);
        if (last) {
            // At most the write that the kill cut short may be there unacknowledged.
            EXPECT_TRUE(value == StoredValue(numbered(*last)) || value == StoredValue(numbered(next)))
                << round;
        }
        ++next;
        if (round % 20 == 19)  // so that some kills fall into the creation of the store
            ASSERT_TRUE(QDir(path(u"tralio"_s)).removeRecursively());
    }
    EXPECT_GT(acknowledged, 500);
    EXPECT_TRUE(m_log.messages().isEmpty()) << m_log.content().constData();
}

TEST_F(SqliteKillTest, what_a_power_loss_leaves_of_the_log_is_an_earlier_state_and_no_damage) {
    constexpr int last = 12;
    QByteArray file;
    QByteArray log;
    {
        SqliteKeyValueStore store(path());
        for (int number = 0; number <= last; ++number)
            store.setValue(key, numbered(number));
        file = contentOf(path());
        log = contentOf(path() + u"-wal"_s);
    }
    ASSERT_GT(log.size(), last * 20'000) << "or the test sees nothing";
    // What a start finds after the disk had this of the log.
    const auto numberAfter = [&](const QByteArray& rest) {
        for (const QString& side : {u"-wal"_s, u"-shm"_s, QString()})
            QFile::remove(path() + side);
        writeFile(path(), file);
        writeFile(path() + u"-wal"_s, rest);
        SqliteKeyValueStore store(path());
        const auto value = store.value(key);
        const int number = value ? std::get<QByteArray>(*value).simplified().toInt() : -1;
        EXPECT_TRUE(!value || value == StoredValue(numbered(number)));
        store.setValue(u"later"_s, qint64{number});
        EXPECT_EQ(reread(u"later"_s), StoredValue(qint64{number}));
        EXPECT_EQ(OtherConnection(path()).query("PRAGMA quick_check"), "ok");
        return number;
    };
    EXPECT_EQ(numberAfter(log), last);

    int before = -1;
    for (int part = 0; part < 30; ++part) {
        const int number = numberAfter(log.first(log.size() * part / 30));
        EXPECT_GE(number, before) << "more of the log brought back less";
        before = number;
    }
    EXPECT_GT(before, 8);

    std::mt19937 random(3);  // NOLINT: the same in every run
    const auto upTo = [&](qsizetype most) {
        return std::uniform_int_distribution<qsizetype>(0, most)(random);
    };
    constexpr qsizetype sector = 512;
    for (int i = 0; i < 30; ++i) {
        // Of what was written last, some has not reached the disk, in no order.
        QByteArray torn = log;
        const qsizetype from = upTo(log.size() - 20 * sector) / sector * sector;
        for (int lost = 0; lost < 5; ++lost)
            torn.replace(from + upTo(18) * sector, sector, QByteArray(sector, i % 2 == 0 ? '\0' : 'x'));
        EXPECT_LE(numberAfter(torn), last);
    }
    EXPECT_TRUE(m_log.messages().isEmpty()) << m_log.content().constData();
}

}  // namespace
}  // namespace tralio
