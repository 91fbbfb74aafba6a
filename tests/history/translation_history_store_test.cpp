#include "history/translation_history_store.h"

#include <QSignalSpy>

#include "state/sqlite_store_test.h"
#include "support/memory_key_value_store.h"

namespace tralio {
namespace {

const QString key = u"app_translation_history_items"_s;

struct TranslationHistoryStoreTest : testing::Test {
    TranslationHistoryStore reopened() {
        return TranslationHistoryStore(
            store, [this] { return now; });
    }

    /// Adds with the languages and the tone that most entries have.
    void add(const QString& source, const QString& translated = u"bản dịch"_s,
        const QString& target = u"Tiếng Việt"_s) {
        history.add(source, translated, u"Tiếng Anh"_s, target, u"Tự nhiên"_s);
    }

    QStringList sources() const {
        QStringList texts;
        for (const TranslationItem& item : history.items())
            texts += item.sourceText;
        return texts;
    }

    /// What a history reads from this stored value.
    QList<TranslationItem> read(const StoredValue& value) {
        store.values[key] = value;
        return reopened().items();
    }

    MemoryKeyValueStore store;
    std::chrono::system_clock::time_point now =
        std::chrono::sys_days(std::chrono::year(2026) / 11 / 25) + 9h + 5min + 123456789ns;
    TranslationHistoryStore history{store, [this] { return now; }};
};

QByteArray entry(const QByteArray& changes = {}) {
    return R"({"id":"0f8fad5b-d9cb-469f-a165-70867728950e","sourceText":"a","translatedText":"b",)"
           R"("sourceLang":"c","targetLang":"d","tone":"e","timestamp":1.5)" +
        changes + "}";
}

TEST_F(TranslationHistoryStoreTest, the_newest_stands_first_with_its_texts_trimmed_and_none_is_blank) {
    const QSignalSpy changes(&history, &ObservableObject::objectWillChange);
    add(u" \r\n"_s);
    add(u"text"_s, u"\u3000"_s);
    EXPECT_TRUE(store.writes.empty() && changes.isEmpty());

    add(u"one"_s);
    history.add(u" \u00a0two\n"_s, u"\thai\u2029"_s, u" Tiếng Anh "_s, u"Tiếng Việt\n"_s, u" Tự nhiên"_s);
    EXPECT_EQ(sources(), (QStringList{u"two"_s, u"one"_s}));
    const TranslationItem& item = history.items().first();
    EXPECT_EQ(item.translatedText, u"hai"_s);
    EXPECT_EQ(item.sourceLang, u" Tiếng Anh "_s);
    EXPECT_EQ(item.targetLang, u"Tiếng Việt\n"_s);
    EXPECT_EQ(item.tone, u" Tự nhiên"_s);
    EXPECT_EQ(item.id.version(), QUuid::Random);
    EXPECT_EQ(item.date().toUTC(), QDateTime({2026, 11, 25}, {9, 5, 0, 123}, QTimeZone::utc()));
}

TEST_F(TranslationHistoryStoreTest, the_same_text_in_the_same_languages_replaces_its_earlier_entry) {
    add(u"caf\u00e9"_s);
    add(u"between"_s);
    const QUuid first = history.items().last().id;
    history.add(u" cafe\u0301\n"_s, u"newer"_s, u"Tie\u0302\u0301ng Anh"_s, u"Tiếng Việt"_s, u"Ngắn gọn"_s);
    EXPECT_EQ(sources(), (QStringList{u"cafe\u0301"_s, u"between"_s}));
    EXPECT_EQ(history.items().first().translatedText, u"newer"_s);
    EXPECT_NE(history.items().first().id, first);

    // What only resembles it stays.
    add(u"Caf\u00e9"_s);
    add(u"cafe"_s);
    add(u"caf\u00e9"_s, u"bản dịch"_s, u"Tiếng Nhật"_s);
    history.add(u"caf\u00e9"_s, u"newer"_s, u"Tiếng Pháp"_s, u"Tiếng Việt"_s, u"Ngắn gọn"_s);
    add(u"\ufb01n"_s);
    add(u"fin"_s);
    EXPECT_EQ(history.items().size(), 8);
}

TEST_F(TranslationHistoryStoreTest, a_longer_history_is_loaded_whole_and_cut_to_fifty_by_the_next_addition) {
    QByteArrayList entries;
    for (int i = 0; i < 80; ++i)
        entries += entry(R"(,"sourceText":")" + QByteArray::number(i) + '"');
    store.values[key] = QByteArray('[' + entries.join(',') + ']');
    TranslationHistoryStore loaded = reopened();
    EXPECT_EQ(loaded.items().size(), 80);
    EXPECT_TRUE(store.writes.empty());

    loaded.add(u"new"_s, u"mới"_s, u"c"_s, u"d"_s, u"e"_s);
    ASSERT_EQ(loaded.items().size(), 50);
    EXPECT_EQ(loaded.items().first().sourceText, u"new"_s);
    EXPECT_EQ(loaded.items().last().sourceText, u"48"_s);
    EXPECT_EQ(reopened().items(), loaded.items());
}

TEST_F(TranslationHistoryStoreTest, entries_are_removed_by_position_by_id_or_all_at_once) {
    for (const QChar name : u"abcdef"_s)
        add(name);
    history.remove({0, 2, 5, 6, -1});
    EXPECT_EQ(sources(), (QStringList{u"e"_s, u"c"_s, u"b"_s}));
    history.remove(history.items()[1].id);
    EXPECT_EQ(sources(), (QStringList{u"e"_s, u"b"_s}));
    EXPECT_EQ(reopened().items(), history.items());

    const QSignalSpy changes(&history, &ObservableObject::objectWillChange);
    store.writes.clear();
    history.remove(QUuid::createUuid());
    history.remove(QSet<qsizetype>());
    history.remove({7});
    history.clear();
    history.clear();
    EXPECT_EQ(store.writes.size(), 5U);
    EXPECT_EQ(changes.size(), 5);
    EXPECT_EQ(store.data(key), "[]");
    EXPECT_EQ(store.timesForgotten, 7) << "what is deleted is gone from the disk as well";
}

TEST_F(TranslationHistoryStoreTest, an_entry_is_stored_as_an_object_of_seven_keys_in_compact_json) {
    add(u"a/b \"c\""_s);
    const TranslationItem& item = history.items().first();
    const QJsonObject object{{u"id"_s, item.id.toString(QUuid::WithoutBraces).toUpper()},
        {u"sourceText"_s, u"a/b \"c\""_s}, {u"translatedText"_s, u"bản dịch"_s},
        {u"sourceLang"_s, u"Tiếng Anh"_s}, {u"targetLang"_s, u"Tiếng Việt"_s}, {u"tone"_s, u"Tự nhiên"_s},
        {u"timestamp"_s, item.timestamp}};
    EXPECT_EQ(store.data(key), QJsonDocument(QJsonArray{object}).toJson(QJsonDocument::Compact));
    // 2026-11-25 09:05 UTC is this many seconds after the start of 2001.
    EXPECT_NEAR(item.timestamp, 817290300.123456789, 1e-6);
}

TEST_F(TranslationHistoryStoreTest, damaged_data_makes_an_empty_history_and_is_set_aside_by_the_next_change) {
    const QByteArray good = entry();
    const auto listOf = [](const QByteArray& one) { return QByteArray('[' + one + ']'); };
    const StoredValue damaged[] = {QString::fromUtf8(listOf(good)), true, qint64{1}, QByteArray("[" + good),
        good, listOf(good + ",null"), listOf(good + ',' + entry().replace(R"("tone":"e",)", "")),
        listOf(entry(R"(,"tone":null)")), listOf(entry(R"(,"timestamp":"1")")),
        listOf(entry(R"(,"id":"{0F8FAD5B-D9CB-469F-A165-70867728950E}")")),
        listOf(entry(R"(,"id":"no id")"))};
    for (const StoredValue& value : damaged) {
        EXPECT_EQ(read(value), QList<TranslationItem>());
        EXPECT_EQ(store.values[key], value);
    }
    EXPECT_TRUE(store.writes.empty());
    TranslationHistoryStore next = reopened();
    next.add(u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s);
    EXPECT_EQ(reopened().items(), next.items());
    EXPECT_EQ(next.items().size(), 1);
    EXPECT_EQ(store.values[key + u".damaged-1"_s], *std::rbegin(damaged));
    next.clear();
    EXPECT_EQ(store.values[key + u".damaged-1"_s], *std::rbegin(damaged)) << "only what could not be read";
}

TEST_F(TranslationHistoryStoreTest, what_was_removed_comes_back_to_its_place_unless_it_was_translated_again) {
    const auto addLater = [this](const QString& text, const QString& translation) {
        now += 1s;
        add(text, translation);
    };
    for (const QString& text : {u"1"_s, u"2"_s, u"3"_s})
        addLater(text, u"t"_s);
    const QList<TranslationItem> before = history.items();
    history.remove(before[1].id);
    history.bringBack(before);
    EXPECT_EQ(reopened().items(), before);

    history.clear();
    addLater(u"4"_s, u"t"_s);
    addLater(u"2"_s, u"better"_s);
    history.bringBack(before);
    EXPECT_EQ(sources(), QStringList({u"2"_s, u"4"_s, u"3"_s, u"1"_s}));
    EXPECT_EQ(history.items().first().translatedText, u"better"_s);

    now -= 24h;  // set right meanwhile
    addLater(u"5"_s, u"t"_s);
    const QList<TranslationItem> mixed = history.items();
    history.clear();
    history.bringBack(mixed);
    EXPECT_EQ(history.items(), mixed);

    for (int i = 10; i < 58; ++i)
        addLater(QString::number(i), u"t"_s);
    const QList<TranslationItem> full = history.items();
    history.remove(full.last().id);
    addLater(u"58"_s, u"t"_s);
    const QList<TranslationItem> late = history.items();
    history.bringBack(full);
    EXPECT_EQ(history.items(), late) << "an older one would be the 51st";
}

TEST_F(TranslationHistoryStoreTest, two_programs_on_one_store_lose_nothing_of_each_other) {
    add(u"old"_s);
    add(u"mine"_s);
    TranslationHistoryStore other = reopened();
    other.add(u"theirs"_s, u"t"_s, u"a"_s, u"b"_s, u"c"_s);
    const QList<TranslationItem> seen = history.items();
    history.remove({1});
    EXPECT_EQ(sources(), (QStringList{u"theirs"_s, u"mine"_s})) << "by the position that the user saw";
    other.add(u"of both"_s, u"t"_s, u"a"_s, u"b"_s, u"c"_s);
    history.bringBack(seen);
    EXPECT_EQ(sources(), (QStringList{u"of both"_s, u"theirs"_s, u"mine"_s, u"old"_s}));
    EXPECT_EQ(reopened().items(), history.items());

    other.load();
    store.values[key] = QByteArray("damaged");
    add(u"new"_s);
    EXPECT_EQ(sources().size(), 5) << "what one has read is not lost with what the other has damaged";
    store.values.erase(key);
    other.remove(other.items().first().id);
    EXPECT_EQ(reopened().items(), other.items());
}

TEST_F(TranslationHistoryStoreTest, no_text_can_lose_the_history) {
    const QString torn = u"a"_s + QChar(0xd83d) + u'b' + QChar(0xde00);
    add(torn, u"\ufeffmark \0 \u0001 \ufffe 😀"_s);
    history.add(u"x"_s, u"y"_s, torn, torn, torn);
    EXPECT_EQ(history.items()[1].sourceText, u"a\ufffdb\ufffd"_s);
    EXPECT_EQ(history.items()[1].translatedText, u"\ufeffmark \0 \u0001 \ufffe 😀"_s);
    EXPECT_EQ(reopened().items(), history.items());
    history.add(u"x"_s, u"z"_s, torn, torn, torn);
    EXPECT_EQ(history.items().size(), 2);

    const auto read = this->read(QByteArray('[' + entry(R"(,"tone":"\ud83d!")") + ']'));
    ASSERT_EQ(read.size(), 1);
    EXPECT_EQ(read[0].tone, u"\ufffd!"_s);
}

TEST_F(SqliteStoreTest, a_history_that_another_process_locks_is_not_damaged_but_read_later) {
    const auto add = [](TranslationHistoryStore& history, const QString& text) {
        history.add(text, u"t"_s, u"a"_s, u"b"_s, u"c"_s);
    };
    auto store = std::make_unique<SqliteKeyValueStore>(path());
    for (const bool isLockedFromTheStart : {false, true}) {
        TranslationHistoryStore before(*store);
        add(before, u"old"_s);
        store.reset();
        const OtherConnection other(path());
        EXPECT_EQ(other.query("PRAGMA journal_mode = DELETE"), "delete") << "a log would let it be read";
        // Whoever reads keeps the store from having a log.
        EXPECT_EQ(other.query("BEGIN; SELECT type FROM entries"), "binary");
        if (isLockedFromTheStart)
            EXPECT_EQ(other.query("COMMIT; BEGIN EXCLUSIVE"), "");
        store = std::make_unique<SqliteKeyValueStore>(path());
        EXPECT_EQ(store->value(u"setting"_s), std::nullopt);
        if (!isLockedFromTheStart)
            EXPECT_EQ(other.query("COMMIT; BEGIN EXCLUSIVE"), "");
        auto history = std::make_unique<TranslationHistoryStore>(*store);
        TranslationHistoryStore cleared(*store);
        add(*history, u"added"_s);
        EXPECT_EQ(history->items().size(), 1);
        EXPECT_EQ(store->value(u"setting"_s), std::nullopt) << "as is known";
        EXPECT_EQ(store->trouble().has_value(), isLockedFromTheStart) << "the settings could not be read";
        EXPECT_EQ(other.query("COMMIT"), "");
        if (isLockedFromTheStart)
            history->load();
        else
            history.reset();
        EXPECT_EQ(TranslationHistoryStore(*store).items().size(), 2);
        EXPECT_TRUE(!history || history->items().size() == 2);
        EXPECT_EQ(reread(key + u".damaged-1"_s), std::nullopt);
        cleared.clear();
        EXPECT_EQ(reread(key), StoredValue(QByteArray("[]")));
    }
}

}  // namespace
}  // namespace tralio
