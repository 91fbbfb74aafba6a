
#include <limits>

#include "state/sqlite_store_test.h"
#include "state/store_file.h"

namespace tralio {
namespace {

using SqliteKeyValueStoreTest = SqliteStoreTest;

TEST_F(SqliteKeyValueStoreTest, values_come_back_as_they_were_written_and_with_their_type) {
    QByteArray everyByte;
    for (int byte = 0; byte < 256; ++byte)
        everyByte.append(static_cast<char>(byte));
    const std::vector<std::pair<QString, StoredValue>> values = {{u"empty text"_s, u""_s},
        {u"null text"_s, QString()}, {u"text with NUL"_s, u"a\0b\0"_s},
        {u"text with a byte order mark"_s, u"\ufeffa\ufeff"_s},
        {u"outside the basic plane"_s, u"👨‍👩‍👧‍👦 𠮷 \U0010ffff \uffff \u202e"_s},
        {u"text that looks like a number"_s, u"007"_s}, {u"true"_s, true}, {u"false"_s, false},
        {u"smallest"_s, std::numeric_limits<qint64>::min()}, {u"empty binary"_s, QByteArray()},
        {u"every byte"_s, everyByte}, {u"megabytes"_s, everyByte.repeated(20'000)},
        {u""_s, u"under the empty key"_s}, {u"'; DROP TABLE entries; --"_s, u"quoted"_s},
        {u"ключ\0💥"_s, u"an odd key"_s}};
    SqliteKeyValueStore store(path());
    for (const auto& [key, value] : values)
        store.setValue(key, value);
    for (const auto& [key, value] : values) {
        EXPECT_TRUE(store.value(key) == value) << key.toStdString();
        EXPECT_TRUE(reread(key) == value) << key.toStdString();
    }
    EXPECT_EQ(store.value(u"never written"_s), std::nullopt);

    // A value takes the type of its last writing.
    store.setValue(u"true"_s, u"text now"_s);
    EXPECT_EQ(reread(u"true"_s), StoredValue(u"text now"_s));
    EXPECT_TRUE(m_log.messages().isEmpty());
}

TEST_F(SqliteKeyValueStoreTest, what_was_overwritten_can_be_made_to_go_from_the_disk) {
    SqliteKeyValueStore store(path());
    store.setValue(u"key"_s, u"sk-very-own"_s);
    store.forgetOverwritten();
    EXPECT_TRUE(contentOf(path()).contains("sk-very-own")) << "or the test sees nothing";
    store.setValue(u"key"_s, true);
    store.forgetOverwritten();
    for (const QString& side : {QString(), u"-wal"_s, u"-shm"_s})
        EXPECT_FALSE(contentOf(path() + side).contains("sk-very-own")) << side.toStdString();
    EXPECT_EQ(reread(u"key"_s), StoredValue(true));
}

TEST_F(SqliteKeyValueStoreTest, a_log_that_a_power_failure_has_cut_or_mixed_up_gives_a_former_state) {
    using State = std::pair<std::optional<StoredValue>, std::optional<StoredValue>>;
    const auto stateOf = [](const SqliteKeyValueStore& store) {
        return State(store.value(u"address"_s), store.value(u"history"_s));
    };
    std::vector<State> states{{}};
    QByteArray file;
    QByteArray log;
    {
        SqliteKeyValueStore store(path());
        for (char number = '0'; number < '6'; ++number) {
            if (number % 2 == 0)
                store.setValue(u"address"_s, QString(QLatin1Char(number)));
            else
                store.setValue(u"history"_s, QByteArray(10'000, number));
            states.push_back(stateOf(store));
        }
        file = contentOf(path());
        log = contentOf(path() + u"-wal"_s);
    }
    const auto expectFormerState = [&](const QByteArray& left) {
        const QString folder = path(u"copy"_s);
        QDir(folder).removeRecursively();
        writeFile(folder + u"/tralio.sqlite-wal"_s, left);
        SqliteKeyValueStore store(writeFile(folder + u"/tralio.sqlite"_s, file));
        EXPECT_EQ(std::ranges::count(states, stateOf(store)), 1);
        EXPECT_EQ(store.trouble(), std::nullopt);
    };
    constexpr qsizetype head = 32;
    constexpr qsizetype frame = 24 + 4096;
    ASSERT_GT(log.size(), head + 15 * frame);
    for (qsizetype end = 0; end <= log.size(); end += frame / 2)
        expectFormerState(log.first(end));
    for (qsizetype first = head; first < log.size(); first += frame)
        for (qsizetype second = first + frame; second < log.size(); second += frame) {
            QByteArray mixed = log;
            mixed.replace(first, frame, log.sliced(second, frame));
            mixed.replace(second, frame, log.sliced(first, frame));
            expectFormerState(mixed);
        }
    EXPECT_TRUE(m_log.messages().isEmpty()) << "none was set aside: " << m_log.content().constData();
}

TEST_F(SqliteKeyValueStoreTest, only_the_user_may_read_the_files_whatever_the_umask) {
    for (const mode_t mask : {0000U, 0022U, 0777U}) {
        const QString base = QString::number(mask, 8);
        const QString file = path(base + u"/share/tralio/tralio.sqlite"_s);
        const mode_t before = umask(mask);
        SqliteKeyValueStore store(file);
        store.setValue(u"key"_s, u"secret"_s);
        umask(before);
        for (const QString& folder : {base, base + u"/share"_s, base + u"/share/tralio"_s})
            EXPECT_EQ(mode(path(folder)), 0700U) << folder.toStdString();
        for (const QString& suffix : {u""_s, u"-wal"_s, u"-shm"_s})
            EXPECT_EQ(mode(file + suffix), 0600U) << mask << suffix.toStdString();
        EXPECT_TRUE(contentOf(file + u"-wal"_s).contains("secret"));  // which is why its mode matters
    }
    EXPECT_TRUE(m_log.messages().isEmpty());

    // What others could read is closed to them, but the folder is left alone.
    SqliteKeyValueStore(path()).setValue(u"key"_s, qint64{1});
    setMode(path(), 0666);
    setMode(path(u"tralio"_s), 0755);
    EXPECT_EQ(reread(u"key"_s), StoredValue(qint64{1}));
    EXPECT_EQ(mode(path()), 0600U);
    EXPECT_EQ(mode(path(u"tralio"_s)), 0755U);
}

TEST(StoreFile, file_systems_that_several_hosts_may_use_are_told_from_those_of_this_host) {
    for (const quint32 shared : {0x6969U, 0xff534d42U, 0x65735546U})
        EXPECT_TRUE(store_file::isShared(shared)) << "one of NFS, SMB, FUSE: " << shared;
    for (const quint32 own : {0xef53U, 0x9123683eU, 0x01021994U})
        EXPECT_FALSE(store_file::isShared(own)) << "one of ext4, btrfs, tmpfs: " << own;
}

TEST_F(SqliteKeyValueStoreTest, a_link_is_followed_and_stays_a_link) {
    const QString target = path(u"elsewhere/values"_s);
    writeFile(path(u"tralio/other"_s), {});  // creates the folder of the link
    ASSERT_TRUE(QDir().mkpath(path(u"elsewhere"_s)));
    ASSERT_TRUE(QFile::link(target, path()));
    SqliteKeyValueStore(path()).setValue(u"key"_s, qint64{1});
    EXPECT_EQ(mode(target), 0600U);
    EXPECT_EQ(reread(u"key"_s), StoredValue(qint64{1}));

    writeFile(target, QByteArray("not a database ").repeated(100));
    SqliteKeyValueStore(path()).setValue(u"key"_s, qint64{2});
    EXPECT_TRUE(QFile::exists(target + u".damaged-1"_s));
    EXPECT_TRUE(QFileInfo(path()).isSymLink());
    EXPECT_EQ(reread(u"key"_s), StoredValue(qint64{2}));
}

TEST_F(SqliteKeyValueStoreTest, two_programs_share_the_file_and_begin_it_anew_when_it_is_removed) {
    auto store = std::make_unique<SqliteKeyValueStore>(path());
    SqliteKeyValueStore other(path());
    store->setValue(u"key"_s, qint64{1});
    EXPECT_EQ(other.value(u"key"_s), StoredValue(qint64{1}));
    other.setValue(u"key"_s, qint64{5});
    EXPECT_EQ(store->value(u"key"_s), StoredValue(qint64{5}));

    store->setValue(u"address"_s, u"of the user's choice"_s);
    ASSERT_TRUE(QDir(path(u"tralio"_s)).removeRecursively());
    writeFile(path(u"tralio"_s), "in the way");
    store->setValue(u"key"_s, qint64{2});
    EXPECT_EQ(store->value(u"address"_s), StoredValue(u"of the user's choice"_s)) << "without a file, too";
    ASSERT_TRUE(QFile::remove(path(u"tralio"_s)));
    store->setValue(u"key"_s, qint64{4});
    EXPECT_EQ(reread(u"key"_s), StoredValue(qint64{4}));
    ASSERT_TRUE(QDir(path(u"tralio"_s)).removeRecursively());
    store->setValue(u"key"_s, qint64{2});
    EXPECT_EQ(reread(u"key"_s), StoredValue(qint64{2}));
    EXPECT_EQ(reread(u"address"_s), StoredValue(u"of the user's choice"_s)) << "and not the defaults";
    EXPECT_EQ(store->trouble(), std::nullopt);

    // Another program's file in its place keeps its log when the old one is closed.
    ASSERT_TRUE(QDir(path(u"tralio"_s)).removeRecursively());
    SqliteKeyValueStore another(path());
    another.setValue(u"key"_s, qint64{3});
    store.reset();
    EXPECT_TRUE(QFile::exists(path() + u"-wal"_s));
    EXPECT_EQ(reread(u"key"_s), StoredValue(qint64{3}));
}

}  // namespace
}  // namespace tralio
