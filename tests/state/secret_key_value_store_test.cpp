#include "state/secret_key_value_store.h"

#include "state/app_settings.h"
#include "state/hot_key_registrar.h"
#include "support/debug_log_file.h"
#include "support/fake_clock.h"
#include "support/memory_key_value_store.h"

namespace tralio {
namespace {

using namespace std::chrono_literals;

using Answer = SecretKeeper::Answer;
using Prompting = SecretKeeper::Prompting;

const QString apiKey = AppSettings::apiKeyKey.toString();
const StoredValue marker = true;

/// Answers when it is told to.
struct FakeKeeper final : SecretKeeper {
    void find(std::function<void(Answer, const QString&)> then) override { m_found = std::move(then); }
    void keep(const QString& secret, Prompting prompting, std::function<void(Answer)> then) override {
        handed += secret;
        lastPrompting = prompting;
        m_kept = std::move(then);
    }
    void forget(Prompting prompting, std::function<void(Answer)> then) override {
        lastPrompting = prompting;
        m_forgotten = std::move(then);
        if (!isAsking)
            answerForget();
    }
    void unlock() override {}

    void answerFind(Answer answer) { std::exchange(m_found, nullptr)(answer, kept.value_or(QString())); }
    void answerKeep(Answer answer) {
        if (answer == Answer::done)
            kept = handed.last();
        std::exchange(m_kept, nullptr)(answer);
    }
    void answerForget() {
        if (!isLocked)
            kept.reset();
        std::exchange(m_forgotten, nullptr)(isLocked ? Answer::locked : Answer::done);
    }
    [[nodiscard]] bool isAsked() const { return m_found || m_kept; }

    bool isLocked = false;
    bool isAsking = false;  ///< the user whether to forget
    std::optional<QString> kept;
    QStringList handed;
    std::optional<Prompting> lastPrompting;

private:
    std::function<void(Answer, const QString&)> m_found;
    std::function<void(Answer)> m_kept;
    std::function<void(Answer)> m_forgotten;
};

struct SecretKeyValueStoreTest : testing::Test {
    void start() {
        settings.reset();
        settings.emplace(store, keeper, clock);
        settings->onKeyAwaited = [this](bool awaited) { awaitedTold += awaited; };
    }
    /// Starts where the keeper has a key and is locked.
    void startLocked() {
        store.values = {{apiKey, marker}};
        keeper.kept = u"sk-mine"_s;
        keeper.isLocked = true;
        start();
    }
    QString key() { return settings->text(apiKey).value_or(u"none"_s); }
    StoredValue stored() { return store.values[apiKey]; }
    [[nodiscard]] bool isToBeForgotten() const { return store.boolean(u"app_api_key_to_forget"_s) == true; }

    DebugLogFile log;
    MemoryKeyValueStore store;
    FakeKeeper keeper;
    FakeClock clock;
    std::optional<SecretKeyValueStore> settings;
    QList<bool> awaitedTold;
};

TEST_F(SecretKeyValueStoreTest, a_key_moves_to_an_open_keeper_and_is_awaited_at_the_next_start) {
    store.values[apiKey] = u"sk-mine"_s;
    start();
    EXPECT_EQ(stored(), StoredValue(u"sk-mine"_s)) << "until the keeper has it";
    keeper.answerKeep(Answer::done);
    EXPECT_EQ(stored(), marker);
    EXPECT_EQ(key(), u"sk-mine"_s);

    start();
    EXPECT_EQ(key(), QString()) << "never the built-in one";
    keeper.answerFind(Answer::locked);
    EXPECT_TRUE(settings->isKeyAwaited());
    keeper.onChange();
    keeper.answerFind(Answer::done);
    EXPECT_EQ(key(), u"sk-mine"_s);
    EXPECT_EQ(awaitedTold, QList<bool>{false});
    EXPECT_EQ(stored(), marker);

    // What is typed meanwhile counts, and the answer that comes later not.
    start();
    settings->setValue(apiKey, u"sk-new"_s);
    EXPECT_FALSE(settings->isKeyAwaited());
    keeper.answerFind(Answer::done);
    EXPECT_EQ(key(), u"sk-new"_s);

    // One that has lost it: the user is asked for a key, and the marker makes no trouble.
    keeper.answerKeep(Answer::done);
    keeper.kept.reset();
    for (const Answer answer : {Answer::absent, Answer::done}) {
        start();
        keeper.answerFind(answer);
        EXPECT_FALSE(settings->isKeyAwaited());
        EXPECT_EQ(key(), QString());
    }
    EXPECT_EQ(log.content().count("has lost the key"), 2);
}

TEST_F(SecretKeyValueStoreTest, a_key_given_up_while_a_keeper_is_slow_is_forgotten_there_whatever_it_says) {
    start();
    settings->setValue(apiKey, u"sk-mine"_s);
    EXPECT_EQ(store.timesForgotten, 0);
    settings->setValue(apiKey, QString());
    EXPECT_EQ(store.timesForgotten, 1) << "nor does a deleted key stay on the disk";
    settings->forgetOverwritten();
    EXPECT_EQ(store.timesForgotten, 2) << "nor what the history asks for through it";
    keeper.isLocked = true;
    keeper.answerKeep(Answer::unavailable);
    EXPECT_TRUE(isToBeForgotten()) << "it may have kept the key and not said so";

    store.values.clear();
    start();
    settings->setValue(apiKey, u"sk-mine"_s);
    settings->setValue(apiKey, QString());
    settings.reset();
    EXPECT_TRUE(isToBeForgotten()) << "the program ended before the answer";
}

TEST_F(SecretKeyValueStoreTest, without_a_keeper_or_with_a_locked_one_the_store_keeps_the_key) {
    store.values[apiKey] = u"sk-mine"_s;
    for (const Answer answer : {Answer::locked, Answer::unavailable}) {
        start();
        keeper.answerKeep(answer);
        settings->setValue(apiKey, u"sk-mine"_s);
        keeper.answerKeep(answer);
        EXPECT_EQ(stored(), StoredValue(u"sk-mine"_s));
        EXPECT_EQ(key(), u"sk-mine"_s);
        EXPECT_FALSE(keeper.isAsked()) << "asked again only when something has changed";
    }
    keeper.onChange();
    EXPECT_EQ(keeper.lastPrompting, Prompting::mustNot);
    settings->setValue(apiKey, u"sk-new"_s);
    keeper.answerKeep(Answer::locked);
    EXPECT_EQ(keeper.lastPrompting, Prompting::may) << "the user has changed it meanwhile";
    keeper.answerKeep(Answer::done);
    EXPECT_EQ(stored(), marker);
}

TEST_F(SecretKeyValueStoreTest, a_key_is_handed_over_as_it_is_typed_the_last_state_last) {
    store.values[apiKey] = u"sk"_s;
    start();
    keeper.answerKeep(Answer::done);
    store.writes.clear();
    for (const QString& typed : {u"sk-"_s, u"sk-n"_s, u"sk-new"_s})
        settings->setValue(apiKey, typed);
    EXPECT_TRUE(store.writes.empty()) << "not on the disk once the keeper has proved to work";
    keeper.answerKeep(Answer::done);
    keeper.answerKeep(Answer::done);
    EXPECT_EQ(keeper.kept, u"sk-new"_s);
    EXPECT_EQ(keeper.handed, (QStringList{u"sk"_s, u"sk-"_s, u"sk-new"_s}));

    // One that fails, or whose answer does not come, leaves the key with the store.
    settings->setValue(apiKey, u"sk-2"_s);
    keeper.answerKeep(Answer::unavailable);
    EXPECT_EQ(stored(), StoredValue(u"sk-2"_s));
    keeper.onChange();
    keeper.answerKeep(Answer::done);
    settings->setValue(apiKey, u"sk-3"_s);
    clock.advance(1s);
    EXPECT_EQ(stored(), marker);
    clock.advance(1s);
    EXPECT_EQ(stored(), StoredValue(u"sk-3"_s)) << "before the program ends unexpectedly";
    keeper.answerKeep(Answer::done);
    settings->setValue(apiKey, u"sk-4"_s);
    settings.reset();
    EXPECT_EQ(stored(), StoredValue(u"sk-4"_s));
    EXPECT_TRUE(isToBeForgotten()) << "the one that it has";
}

TEST_F(SecretKeyValueStoreTest, a_key_that_is_given_up_while_the_keeper_is_locked_goes_when_it_opens) {
    for (const QStringList& typed :
        {QStringList(AppSettings::defaultApiKey), {QString()}, {u"sk-2"_s, QString()}}) {
        startLocked();
        keeper.answerFind(Answer::locked);
        for (const QString& key : typed) {
            settings->setValue(apiKey, key);
            if (keeper.isAsked())
                keeper.answerKeep(Answer::locked);
        }
        EXPECT_FALSE(settings->isKeyAwaited());
        clock.advance(10s);
        EXPECT_EQ(keeper.lastPrompting, Prompting::may);
        start();
        EXPECT_EQ(keeper.lastPrompting, Prompting::mustNot);
        EXPECT_EQ(key(), typed.last());
        EXPECT_EQ(keeper.kept, u"sk-mine"_s);
        keeper.isLocked = false;
        keeper.onChange();
        EXPECT_EQ(keeper.kept, std::nullopt);
    }

    // A new one takes its place.
    startLocked();
    settings->setValue(apiKey, QString());
    settings->setValue(apiKey, u"sk-new"_s);
    keeper.isLocked = false;
    clock.advance(10s);
    keeper.answerKeep(Answer::done);
    keeper.onChange();
    start();
    EXPECT_EQ(keeper.kept, u"sk-new"_s);
    EXPECT_EQ(stored(), marker);

    // So does one that is entered before the user agrees to the deletion, which takes it along.
    keeper.isAsking = true;
    settings->setValue(apiKey, QString());
    clock.advance(10s);
    settings->setValue(apiKey, u"sk-2"_s);
    keeper.answerKeep(Answer::done);
    keeper.answerForget();
    EXPECT_EQ(stored(), StoredValue(u"sk-2"_s));
    keeper.answerKeep(Answer::done);
    EXPECT_EQ(keeper.kept, u"sk-2"_s);
}

TEST_F(SecretKeyValueStoreTest, undoing_a_reset_waits_again_for_a_key_that_was_awaited) {
    struct NoRegistrar final : HotKeyRegistrar {
        void updateTextHotKey(quint32 /*keyCode*/, quint32 /*modifiers*/) override {}
        void updateOCRHotKey(quint32 /*keyCode*/, quint32 /*modifiers*/) override {}
    } registrar;
    for (const bool opensBeforeUndo : {false, true}) {
        startLocked();
        awaitedTold.clear();
        AppSettings shown(*settings, registrar);
        const auto undo = shown.remembered();
        shown.resetToDefaults();
        shown.resetToDefaults();  // pressed twice
        EXPECT_EQ(shown.apiKey(), AppSettings::defaultApiKey);
        EXPECT_FALSE(settings->isKeyAwaited());
        keeper.isLocked = !opensBeforeUndo;
        keeper.onChange();
        shown.apiKey = u"sk-new"_s;
        EXPECT_EQ(keeper.handed, QStringList()) << "it would replace the one that it has";
        shown.apiKey = QString();
        clock.advance(6s);

        undo();
        EXPECT_EQ(shown.apiKey(), QString());
        EXPECT_TRUE(settings->isKeyAwaited());
        EXPECT_EQ(stored(), marker);
        keeper.isLocked = false;  // meanwhile, of which nobody has told
        clock.advance(1min);
        keeper.answerFind(Answer::done);
        EXPECT_EQ(key(), u"sk-mine"_s);
        EXPECT_EQ(awaitedTold, (QList<bool>{false, true, false}));
    }
}

TEST_F(SecretKeyValueStoreTest, the_built_in_key_and_an_empty_one_are_no_secrets) {
    for (const QString& key : {AppSettings::defaultApiKey, QString()}) {
        store.values[apiKey] = u"sk-mine"_s;
        start();
        settings->setValue(apiKey, key);
        EXPECT_EQ(stored(), StoredValue(key));
        keeper.answerKeep(Answer::done);
        EXPECT_EQ(stored(), StoredValue(key));
        EXPECT_EQ(keeper.kept, std::nullopt) << "an earlier one does not stay behind";
        start();
        EXPECT_FALSE(keeper.isAsked());
        EXPECT_EQ(this->key(), key);
    }
    keeper.kept = u"of another installation"_s;
    keeper.onChange();
    EXPECT_EQ(keeper.kept, u"of another installation"_s);
    settings->setValue(u"other"_s, qint64{5});
    EXPECT_EQ(settings->integer(u"other"_s), 5);
}

}  // namespace
}  // namespace tralio
