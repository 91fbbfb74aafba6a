#include "state/sqlite_store_test.h"

namespace tralio {
namespace {

struct SqliteFailureTest : SqliteStoreTest {
    /// Three writes to a store that cannot keep them, which must be in the log once.
    void expectValuesAreKept(SqliteKeyValueStore& store) {
        const qsizetype before = m_log.messages().size();
        store.setValue(u"a"_s, qint64{0});
        store.setValue(u"a"_s, qint64{1});
        store.setValue(u"b"_s, u"private"_s);
        EXPECT_EQ(store.value(u"a"_s), StoredValue(qint64{1}));
        EXPECT_EQ(store.value(u"b"_s), StoredValue(u"private"_s));
        EXPECT_LE(m_log.messages().size(), before + 1);
        ASSERT_FALSE(m_log.messages().isEmpty());
        EXPECT_TRUE(m_log.messages().last().contains(u": values are kept in memory: "));
        EXPECT_FALSE(m_log.content().contains("private"));
    }

    /// The next write takes those kept along, and the log says that it is over.
    void expectTheNextWriteSavesAll(SqliteKeyValueStore& store) {
        store.setValue(u"c"_s, true);
        EXPECT_EQ(
            OtherConnection(path()).query("SELECT group_concat(key || '=' || value) FROM "
                                          "(SELECT * FROM entries WHERE key IN ('a','b','c') ORDER BY key)"),
            "a=1,b=private,c=1");
        EXPECT_EQ(m_log.messages().last(), u"SqliteKeyValueStore.setValue: all values are written again"_s);
    }

    void makeStore(const QString& key, const StoredValue& value) const {
        SqliteKeyValueStore(path()).setValue(key, value);
    }
};

TEST_F(SqliteFailureTest, a_damaged_or_foreign_file_is_set_aside_and_never_over_an_earlier_one) {
    const QString foreign = path(u"foreign"_s);
    EXPECT_EQ(OtherConnection(foreign).query("CREATE TABLE entries (name)"), "");
    makeStore(u"key"_s, QByteArray(100'000, 'x'));
    makeStore(u"other"_s, u"value"_s);
    const QByteArray good = contentOf(path());
    QByteArray badPage = good;
    badPage.replace(4096, 2048, QByteArray(2048, '\xff'));
    QByteArray badHeader = good;
    badHeader.replace(0, 16, QByteArray(16, 'x'));
    const QByteArray contents[] = {QByteArray("this is not a database\n").repeated(1000), contentOf(foreign),
        badPage, badHeader, good.first(good.size() / 2), good.first(50)};
    int number = 0;
    for (const QByteArray& damaged : contents) {
        const QString name = u"tralio.sqlite.damaged-%1"_s.arg(++number);
        writeFile(path(), damaged);
        writeFile(path() + u"-wal"_s, "a log of " + QByteArray::number(number));
        SqliteKeyValueStore store(path());
        EXPECT_EQ(store.value(u"other"_s), std::nullopt);
        store.setValue(u"key"_s, qint64{number});
        EXPECT_EQ(store.trouble(), StoreTrouble::unreadable) << number;
        EXPECT_EQ(reread(u"key"_s), StoredValue(qint64{number}));
        const QString aside = path(u"tralio/"_s + name);
        EXPECT_TRUE(contentOf(aside) == damaged) << number;
        EXPECT_EQ(mode(aside), 0600U);
        ASSERT_EQ(m_log.messages().size(), number);
        EXPECT_TRUE(m_log.messages().last().startsWith(
            u"SqliteKeyValueStore.open: the store is damaged and was set aside as "_s + name));
    }
    EXPECT_EQ(SqliteKeyValueStore(path()).trouble(), StoreTrouble::unreadable) << "the user has not seen it";
    SqliteKeyValueStore(path()).acknowledgeTrouble();
    EXPECT_EQ(SqliteKeyValueStore(path()).trouble(), std::nullopt);
}

TEST_F(SqliteFailureTest, a_path_that_cannot_be_used_keeps_values_in_memory) {
    writeFile(path(u"file"_s), "a file where a folder should be");
    ASSERT_TRUE(QDir().mkpath(path(u"folder/tralio.sqlite"_s)));
    ASSERT_TRUE(QDir().mkpath(path(u"closed"_s)));
    setMode(path(u"closed"_s), 0);
    ASSERT_EQ(mkfifo(QFile::encodeName(path(u"pipe"_s)).constData(), 0600), 0);
    using enum StoreTrouble;  // where nothing was stored, nothing is unreadable
    for (const auto& [unusable, trouble] : {std::pair(path(u"file/tralio.sqlite"_s), unsaved),
             std::pair(path(u"folder/tralio.sqlite"_s), unreadable),
             std::pair(path(u"closed/tralio/tralio.sqlite"_s), unreadable),
             std::pair(path(u"pipe"_s), unreadable),
             std::pair(u"/proc/self/tralio/tralio.sqlite"_s, unsaved)}) {
        m_log.clear();
        {
            SqliteKeyValueStore store(unusable);
            EXPECT_EQ(store.trouble(), trouble) << unusable.toStdString();
            expectValuesAreKept(store);
        }
        EXPECT_EQ(m_log.messages().size(), 1) << m_log.content().constData();
    }
    EXPECT_EQ(contentOf(path(u"file"_s)), "a file where a folder should be");
}

TEST_F(SqliteFailureTest, a_file_or_a_folder_that_is_read_only_is_trouble_until_it_may_be_written) {
    using Told = QList<std::optional<StoreTrouble>>;
    for (const mode_t folderMode : {0700U, 0500U}) {
        m_log.clear();
        makeStore(u"old"_s, u"value"_s);
        setMode(path(), 0400);
        setMode(path(u"tralio"_s), folderMode);
        SqliteKeyValueStore store(path());
        EXPECT_EQ(store.value(u"old"_s), StoredValue(u"value"_s));
        EXPECT_TRUE(m_log.messages().isEmpty());
        EXPECT_EQ(store.trouble(), StoreTrouble::unsaved) << "told before anything is lost";
        Told told;
        store.onTrouble = [&](std::optional<StoreTrouble> trouble) { told += trouble; };
        expectValuesAreKept(store);
        store.acknowledgeTrouble();
        store.setValue(u"a"_s, qint64{1});
        EXPECT_EQ(told, Told{std::nullopt}) << "the user knows";
        EXPECT_EQ(store.value(u"old"_s), StoredValue(u"value"_s));
        EXPECT_EQ(mode(path()), 0400U);
        setMode(path(u"tralio"_s), 0700);
        setMode(path(), 0600);
        expectTheNextWriteSavesAll(store);
        {
            const FileSizeLimit full(50'000);
            store.setValue(u"large"_s, QByteArray(1'000'000, 'x'));
        }
        store.setValue(u"large"_s, false);
        EXPECT_EQ(told, (Told{std::nullopt, StoreTrouble::unsaved, std::nullopt}))
            << "what comes later is something else";
    }
}

TEST_F(SqliteFailureTest, a_value_that_does_not_fit_on_the_disk_does_not_hold_up_those_that_do) {
    const QByteArray large(200'000, 'x');
    SqliteKeyValueStore store(path());
    store.setValue(u"history"_s, QByteArray("short"));
    {
        const FileSizeLimit limit(100'000);
        store.setValue(u"history"_s, large);
        store.setValue(u"a"_s, u"fits"_s);
        store.setValue(u"b"_s, u"fits too"_s);
        EXPECT_EQ(store.value(u"history"_s), StoredValue(large));
        EXPECT_EQ(reread(u"a"_s), StoredValue(u"fits"_s));
        EXPECT_EQ(reread(u"b"_s), StoredValue(u"fits too"_s));
        EXPECT_EQ(reread(u"history"_s), StoredValue(QByteArray("short")));
        EXPECT_EQ(m_log.messages().size(), 1) << m_log.content().constData();
    }
    store.setValue(u"a"_s, u"again"_s);
    EXPECT_TRUE(reread(u"history"_s) == StoredValue(large));
    EXPECT_EQ(m_log.messages().size(), 2) << m_log.content().constData();

    // The end of a streak begins a new one.
    const FileSizeLimit limit(50'000);
    store.setValue(u"history"_s, QByteArray(300'000, 'y'));
    EXPECT_EQ(m_log.messages().size(), 3) << m_log.content().constData();
}

TEST_F(SqliteFailureTest, another_process_that_locks_the_file_neither_freezes_nor_loses_anything) {
    writeFile(path(), {});
    const OtherConnection other(path());
    ASSERT_EQ(other.query("CREATE TABLE t (c)"), "");
    for (const bool fromTheStart : {true, false}) {
        if (fromTheStart)
            ASSERT_EQ(other.query("BEGIN EXCLUSIVE"), "");
        SqliteKeyValueStore store(path());
        if (!fromTheStart)
            ASSERT_EQ(other.query("BEGIN IMMEDIATE"), "");
        const Stopwatch timer;
        expectValuesAreKept(store);
        for (int keyPress = 0; keyPress < 50; ++keyPress)
            store.setValue(u"a"_s, qint64{1});
        // Once for the patience of the first write; fifty times would be ten seconds.
        EXPECT_LT(timer.elapsed(), 5'000);
        ASSERT_EQ(other.query("COMMIT"), "");
        expectTheNextWriteSavesAll(store);

        ASSERT_EQ(other.query("BEGIN IMMEDIATE"), "");
        store.setValue(u"last"_s, fromTheStart);
        ASSERT_EQ(other.query("COMMIT"), "");
        EXPECT_NE(reread(u"last"_s), StoredValue(fromTheStart));
    }
    EXPECT_EQ(reread(u"last"_s), StoredValue(false)) << "there is a last chance at the end";
    EXPECT_FALSE(QFile::exists(path() + u".damaged-1"_s)) << "a lock is no damage";
}

TEST_F(SqliteFailureTest, damage_under_the_running_program_is_told_once_and_repaired_by_the_next_write) {
    makeStore(u"key"_s, QByteArray(1'000'000, 'x'));
    SqliteKeyValueStore store(path());
    store.setValue(u"small"_s, u"chosen by the user"_s);
    QFile file(path());
    const auto damage = [&file] {
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.resize(4096));
        file.close();
    };
    damage();
    EXPECT_EQ(store.value(u"key"_s), std::nullopt);
    EXPECT_EQ(store.value(u"key"_s), std::nullopt);
    EXPECT_EQ(m_log.messages().filter(u"SqliteKeyValueStore.value: cannot read: "_s).size(), 1);

    store.setValue(u"key"_s, QByteArray(1'000'000, 'y'));
    EXPECT_TRUE(store.value(u"key"_s) == StoredValue(QByteArray(1'000'000, 'y')));
    EXPECT_TRUE(reread(u"key"_s) == StoredValue(QByteArray(1'000'000, 'y')));
    EXPECT_TRUE(QFile::exists(path() + u".damaged-1"_s)) << m_log.content().constData();
    EXPECT_TRUE(reread(u"small"_s) == StoredValue(u"chosen by the user"_s)) << "what is known is not lost";
    EXPECT_EQ(SqliteKeyValueStore(path()).trouble(), std::nullopt);

    // It cannot be made anew at once.
    store.forgetOverwritten();
    damage();
    setMode(path(u"tralio"_s), 0500);
    store.setValue(u"key"_s, QByteArray(1'000'000, 'z'));
    setMode(path(u"tralio"_s), 0700);
    store.setValue(u"a"_s, false);
    EXPECT_TRUE(reread(u"small"_s) == StoredValue(u"chosen by the user"_s)) << "nor then";
    EXPECT_EQ(store.trouble(), StoreTrouble::unreadable) << "something large is gone";
    EXPECT_EQ(SqliteKeyValueStore(path()).trouble(), StoreTrouble::unreadable);
}

TEST_F(SqliteFailureTest, a_value_that_is_none_of_ours_any_more_is_trouble_and_not_just_absent) {
    for (const char* damage : {// The row that the index names has another key.
             "PRAGMA writable_schema = ON; CREATE TABLE copy (key TEXT NOT NULL, type TEXT NOT NULL, value "
             "NOT NULL); UPDATE sqlite_schema SET rootpage = (SELECT rootpage FROM sqlite_schema WHERE name "
             "= 'copy') WHERE name = 'entries'",
             "UPDATE entries SET value = CAST(X'68FF' AS TEXT) WHERE key = 'url'",
             "UPDATE entries SET type = 'tezt' WHERE key = 'url'"}) {
        QDir(path(u"tralio"_s)).removeRecursively();
        makeStore(u"url"_s, u"http://127.0.0.1/v1"_s);
        EXPECT_EQ(OtherConnection(path()).query(damage), "");
        SqliteKeyValueStore store(path());
        EXPECT_EQ(store.value(u"url"_s), std::nullopt);
        EXPECT_EQ(store.trouble(), StoreTrouble::unreadable) << damage;
        store.acknowledgeTrouble();
        EXPECT_EQ(store.value(u"other"_s), std::nullopt);
        EXPECT_EQ(store.value(u"url"_s), std::nullopt);
        EXPECT_EQ(store.trouble(), std::nullopt) << "told once for one value";
        store.setValue(u"url"_s, u"new"_s);
        EXPECT_EQ(reread(u"url"_s), StoredValue(u"new"_s));
    }
    EXPECT_EQ(OtherConnection(path()).query("SELECT value FROM entries WHERE key = 'url.damaged-1'"),
        "http://127.0.0.1/v1")
        << "of the last damage, which left it legible";
}

TEST_F(SqliteFailureTest, what_a_full_disk_keeps_from_being_opened_for_writing_is_read_and_written_later) {
    makeStore(u"old"_s, u"value"_s);
    // What the disk had no room for at the end stands in the log.
    {
        SqliteKeyValueStore before(path());
        before.setValue(u"new"_s, u"in the log"_s);
        for (const QString& side : {QString(), u"-wal"_s})
            ASSERT_TRUE(QFile::copy(path() + side, path() + u".copy"_s + side));
    }
    for (const QString& side : {QString(), u"-wal"_s}) {
        QFile::remove(path() + side);
        ASSERT_TRUE(QFile::rename(path() + u".copy"_s + side, path() + side));
    }
    std::optional<FileSizeLimit> full(1000);
    SqliteKeyValueStore store(path());
    EXPECT_EQ(store.value(u"old"_s), StoredValue(u"value"_s));
    EXPECT_EQ(store.value(u"new"_s), StoredValue(u"in the log"_s));
    EXPECT_EQ(store.trouble(), StoreTrouble::unsaved);
    for ([[maybe_unused]] const char* start : {"the first", "the next"})
        EXPECT_EQ(SqliteKeyValueStore(path(u"new"_s)).trouble(), StoreTrouble::unsaved) << start;
    full.reset();
    store.setValue(u"a"_s, true);
    EXPECT_EQ(store.trouble(), std::nullopt) << "all is written";
    EXPECT_EQ(reread(u"a"_s), StoredValue(true));
    EXPECT_EQ(reread(u"old"_s), StoredValue(u"value"_s));
}

TEST_F(SqliteFailureTest, a_preserved_value_is_moved_to_a_key_of_its_own_before_it_is_overwritten) {
    makeStore(u"history"_s, QByteArray("first"));
    SqliteKeyValueStore store(path());
    for (const char* next : {"second", "third"}) {
        store.preserve(u"history"_s);
        store.setValue(u"history"_s, QByteArray(next));
        store.setValue(u"history"_s, QByteArray(next));
    }
    store.preserve(u"never stored"_s);
    store.setValue(u"never stored"_s, true);
    const auto entries = [this] {
        return OtherConnection(path()).query(
            "SELECT group_concat(key || '=' || value) FROM (SELECT * FROM entries ORDER BY key)");
    };
    EXPECT_EQ(entries(), "history=third,history.damaged-1=first,history.damaged-2=second,never stored=1");

    EXPECT_EQ(OtherConnection(path()).query("DELETE FROM entries WHERE key = 'history.damaged-1'"), "");
    store.preserve(u"history"_s);
    store.setValue(u"history"_s, QByteArray("fourth"));
    EXPECT_EQ(entries(), "history=fourth,history.damaged-1=third,history.damaged-2=second,never stored=1");
}

}  // namespace
}  // namespace tralio
