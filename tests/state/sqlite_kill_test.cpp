#include <array>
#include <chrono>
#include <csignal>
#include <random>
#include <sys/wait.h>

#include "state/sqlite_store_test.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr std::array keys = {u"text", u"integer", u"binary"};

/// A value of the key's own type that carries the number; the binary ones are large enough that the log is
/// carried over into the file every few dozen writes, so that some kills fall into that too.
StoredValue numbered(int number) {
    switch (number % keys.size()) {
        case 0:
            return QString::number(number);
        case 1:
            return qint64{number};
        default:
            return QByteArray::number(number) + QByteArray(20'000 + number % 7 * 10'000, ' ');
    }
}

int numberOf(const StoredValue& value) {
    if (const auto* text = std::get_if<QString>(&value))
        return text->toInt();
    if (const auto* bytes = std::get_if<QByteArray>(&value))
        return bytes->trimmed().toInt();
    return static_cast<int>(std::get<qint64>(value));
}

/// Writes values one after the other, in turn under each key, and acknowledges each to its parent; until
/// killed.
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
                store.setValue(QStringView(keys.at(number % keys.size())).toString(), numbered(number));
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
    int first = 0;
    int acknowledged = 0;
    for (int round = 0; round < 60; ++round) {
        std::array<std::optional<int>, keys.size()> last;
        int expectedNext = first;
        const auto note = [&](int number) {
            EXPECT_EQ(number, expectedNext++);
            last.at(number % keys.size()) = number;
            ++acknowledged;
        };
        const Writer writer(path(), first);
        // Every third kill comes early, while the store is being opened or created.
        if (round % 3 != 0) {
            for (int count = upTo(60); count > 0; --count)
                note(writer.next().value());
        }
        spin(std::chrono::microseconds(upTo(3000)));
        ASSERT_TRUE(writer.kill());
        while (const auto number = writer.next())
            note(*number);

        if (QFile::exists(path())) {  // the kill may have come before it was created
            EXPECT_EQ(OtherConnection(path()).query("PRAGMA quick_check"), "ok");
        }
        const SqliteKeyValueStore store(path());
        for (size_t index = 0; index < keys.size(); ++index) {
            if (!last.at(index))
                continue;
            const auto value = store.value(QStringView(keys.at(index)).toString());
            ASSERT_TRUE(value.has_value());
            // At most the write that the kill cut short may be there unacknowledged.
            EXPECT_TRUE(numberOf(*value) == *last.at(index) || numberOf(*value) == expectedNext) << round;
            EXPECT_TRUE(*value == numbered(numberOf(*value)));
        }
        first = expectedNext + static_cast<int>(keys.size());
        if (round % 20 == 19) {  // so that some kills fall into the creation of the store
            ASSERT_TRUE(QDir(path(u"tralio"_s)).removeRecursively());
        }
    }
    EXPECT_GT(acknowledged, 500);
    EXPECT_TRUE(m_log.messages().isEmpty()) << m_log.content().constData();
}

}  // namespace
}  // namespace tralio
