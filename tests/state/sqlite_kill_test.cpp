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

/// Writes values one after the other and acknowledges each to its parent, until killed.
class Writer final {
public:
    Writer(const QString& path, int first) {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0)
            std::abort();
        m_process = fork();
        if (m_process == 0) {
            SqliteKeyValueStore store(path);
            for (int number = first;; ++number) {
                store.setValue(key, numbered(number));
                if (write(ends[1], &number, sizeof number) != sizeof number)
                    _exit(1);
            }
        }
        close(ends[1]);
        m_acknowledgements = ends[0];
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() { close(m_acknowledgements); }

    /// The next acknowledged number, or nothing when the writer is gone.
    [[nodiscard]] std::optional<int> next() const {
        int number = 0;
        return read(m_acknowledgements, &number, sizeof number) == sizeof number ? std::optional(number)
                                                                                 : std::nullopt;
    }

    [[nodiscard]] bool kill() const {
        int status = 0;
        ::kill(m_process, SIGKILL);
        return waitpid(m_process, &status, 0) == m_process && WIFSIGNALED(status);
    }

private:
    pid_t m_process = -1;
    int m_acknowledgements = -1;
};

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
        const Writer writer(path(), next);
        const auto isAcknowledged = [&] {
            const auto number = writer.next();
            if (!number)
                return false;
            EXPECT_EQ(*number, next++);
            last = number;
            ++acknowledged;
            return true;
        };
        // Every third kill comes early, while the store is being opened or created.
        for (int count = round % 3 == 0 ? 0 : upTo(60); count > 0; --count)
            ASSERT_TRUE(isAcknowledged());
        spin(std::chrono::microseconds(upTo(3000)));
        ASSERT_TRUE(writer.kill());
        while (isAcknowledged()) {
        }

        if (QFile::exists(path())) {  // the kill may have come before it was created
            EXPECT_EQ(OtherConnection(path()).query("PRAGMA quick_check"), "ok");
        }
        const auto value = SqliteKeyValueStore(path()).value(key);
        if (last) {
            // At most the write that the kill cut short may be there unacknowledged.
            EXPECT_TRUE(value == StoredValue(numbered(*last)) || value == StoredValue(numbered(next)))
                << round;
        }
        ++next;
        if (round % 20 == 19) {  // so that some kills fall into the creation of the store
            ASSERT_TRUE(QDir(path(u"tralio"_s)).removeRecursively());
        }
    }
    EXPECT_GT(acknowledged, 500);
    EXPECT_TRUE(m_log.messages().isEmpty()) << m_log.content().constData();
}

}  // namespace
}  // namespace tralio
