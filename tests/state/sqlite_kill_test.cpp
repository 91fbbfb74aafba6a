#include <array>
#include <chrono>
#include <csignal>
#include <random>
#include <sys/wait.h>

#include "state/sqlite_store_test.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

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

void spin(std::chrono::microseconds duration) {
    const auto end = std::chrono::steady_clock::now() + duration;
    while (std::chrono::steady_clock::now() < end) {
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
            if (read(ends[0], &number, sizeof number) != sizeof number)
                return false;
            EXPECT_EQ(number, next++);
            last = number;
            ++acknowledged;
            return true;
        };
        // Every third kill comes early, while the store is being opened or created.
        for (int count = round % 3 == 0 ? 0 : upTo(60); count > 0; --count)
            ASSERT_TRUE(isAcknowledged());
        spin(std::chrono::microseconds(upTo(3000)));
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

}  // namespace
}  // namespace tralio
