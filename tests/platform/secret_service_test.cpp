#include "platform/linux/secrets/secret_service.h"

#include "platform/linux/secrets/secret_item.h"
#include "platform/scripted_bus_object.h"
#include "support/debug_log_file.h"
#include "support/private_bus.h"

namespace tralio {
namespace {

using Answer = SecretKeeper::Answer;
using Prompting = SecretKeeper::Prompting;

/// A keyring with one collection, which a test locks.
struct ScriptedSecretService final : ScriptedBusObject {
    enum class Kind {
        gnome,
        kwallet,    ///< its collection stays locked when its wallet is opened, until a prompt to unlock it is
                    ///< run
        keepassxc,  ///< hides what is locked, and does everything by a prompt
    };

    explicit ScriptedSecretService(QDBusConnection bus)
        : ScriptedBusObject(bus, QLatin1String(SecretServiceCalls::service), m_path) {
        registerSecretTypes();
        bus.registerVirtualObject(u"/modules"_s, this, QDBusConnection::SubPath);
    }

    /// The user does so when the prompt asks for it.
    void unlock() {
        isLocked = false;
        if (kind == Kind::kwallet)
            complete(u"/"_s);
        else if (kind == Kind::keepassxc)
            tell(u"CollectionChanged"_s);
        else
            signal(m_collection, u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s,
                {u"org.freedesktop.Secret.Collection"_s, QVariantMap{{u"Locked"_s, false}}, QStringList()});
    }
    void openWallet() {
        isWalletOpen = true;
        signal(u"/modules/kwalletd5"_s, u"org.kde.KWallet"_s, u"walletOpened"_s, {u"kdewallet"_s});
    }
    void tell(const QString& event) {
        signal(m_path, u"org.freedesktop.Secret.Service"_s, event, {object(m_collection)});
    }

    Kind kind = Kind::gnome;
    bool isLocked = false;
    bool isWalletOpen = false;
    enum class User { confirms, declines, isAway } user = User::confirms;
    bool hasCollection = true;
    QList<std::pair<SecretAttributes, QByteArray>> items;
    QStringList calls;
    QStringList rubbishMethods;  ///< which it answers with the rubbish
    QVariantList rubbish;

private:
    void take(const QDBusMessage& call) override {
        const QString method = call.member();
        calls += method;
        if (method == u"isOpen" && (kind != Kind::kwallet || call.path() != u"/modules/kwalletd5"))
            send(call.createErrorReply(QDBusError::UnknownMethod, {}));
        else
            send(call.createReply(
                rubbishMethods.contains(method) ? rubbish : answer(method, call.arguments())));
        if (method == u"Prompt" && m_prompted && user != User::isAway)
            complete(user == User::confirms ? m_prompted() : QString());
    }
    /// @param result empty if the user has declined
    void complete(const QString& result) {
        signal(m_prompt, u"org.freedesktop.Secret.Prompt"_s, u"Completed"_s,
            {result.isEmpty(), variant(object(result.isEmpty() ? u"/"_s : result))});
    }
    /// Does it at once, or leaves it to a prompt.
    QVariantList byPrompt(const std::function<QString()>& act) {
        if (kind != Kind::keepassxc)
            return {object(act()), object(u"/"_s)};
        m_prompted = act;
        return {object(u"/"_s), object(m_prompt)};
    }
    QVariantList answer(const QString& method, const QVariantList& arguments) {
        if (method == u"OpenSession") {
            EXPECT_EQ(arguments.value(0), u"plain"_s);
            return {variant(QString()), object(m_session)};
        }
        if (method == u"ReadAlias")
            return {object(arguments.value(0) == u"default"_s && hasCollection ? m_collection : u"/"_s)};
        if (method == u"Get")
            return {arguments.value(1) == u"Label"_s ? variant(u"kdewallet"_s) : variant(isLocked)};
        if (method == u"isOpen")
            return {isWalletOpen && arguments.value(0) == u"kdewallet"_s};
        if (method == u"SearchItems") {
            QList<QDBusObjectPath> unlocked;
            QList<QDBusObjectPath> locked;
            const auto wanted = qdbus_cast<SecretAttributes>(arguments.value(0));
            if (items.value(0).first == wanted && !(isLocked && kind == Kind::keepassxc))
                (isLocked ? locked : unlocked) += QDBusObjectPath(m_item);
            return {QVariant::fromValue(unlocked), QVariant::fromValue(locked)};
        }
        if (method == u"GetSecret") {
            EXPECT_EQ(arguments.value(0).value<QDBusObjectPath>().path(), m_session);
            return {QVariant::fromValue(
                SecretValue{QDBusObjectPath(m_session), {}, items.first().second, u"text/plain"_s})};
        }
        if (method == u"CreateItem") {
            const auto properties = qdbus_cast<QVariantMap>(arguments.value(0));
            const auto attributes =
                qdbus_cast<SecretAttributes>(properties.value(u"org.freedesktop.Secret.Item.Attributes"_s));
            EXPECT_EQ(arguments.value(2), true) << "one key, however often it is changed";
            const QByteArray value = qdbus_cast<SecretValue>(arguments.value(1)).value;
            return byPrompt([=, this] {
                items = {{attributes, value}};
                return m_item;
            });
        }
        if (method == u"Delete")
            return byPrompt([this] {
                items.clear();
                return u"/"_s;
            }).last(1);
        if (method == u"Unlock") {
            const auto objects = qdbus_cast<QList<QDBusObjectPath>>(arguments.value(0));
            EXPECT_EQ(objects.size(), 1);
            EXPECT_TRUE(objects.value(0).path().startsWith(m_collection));
            m_prompted = nullptr;
            if (isWalletOpen)
                m_prompted = [this] {
                    isLocked = false;
                    return u"/"_s;
                };
            return {QVariant::fromValue(QList<QDBusObjectPath>()), object(m_prompt)};
        }
        return {object(u"/"_s)};
    }

    static inline const QString m_path = QLatin1String(SecretServiceCalls::path);
    const QString m_session = m_path + u"/session/1"_s;
    const QString m_collection = m_path + u"/collection/login"_s;
    const QString m_item = m_collection + u"/1"_s;
    const QString m_prompt = m_path + u"/prompt/1"_s;
    std::function<QString()> m_prompted;  ///< what the prompt will do, and its result
};

struct SecretServiceTest : testing::Test {
    using Kind = ScriptedSecretService::Kind;
    using Found = std::pair<Answer, QString>;

    SecretServiceTest() {
        keeper.onChange = [this] { ++changes; };
    }

    /// What an operation answers, which it does from the event loop only.
    template <typename Begin>
    Found answerTo(Begin begin) {
        std::optional<Found> result;
        begin([&](Answer answer, const QString& secret = {}) { result = {answer, secret}; });
        EXPECT_FALSE(result) << "nothing is answered before the event loop runs";
        EXPECT_TRUE(eventually([&] { return result.has_value(); }));
        return result.value_or(Found(Answer::unavailable, u"nothing"_s));
    }
    Found found() {
        return answerTo([this](auto done) { keeper.find(done); });
    }
    Answer kept(const QString& secret, Prompting prompting = Prompting::may) {
        return answerTo([&](auto done) { keeper.keep(secret, prompting, done); }).first;
    }
    Answer forgotten(Prompting prompting = Prompting::may) {
        return answerTo([&](auto done) { keeper.forget(prompting, done); }).first;
    }

    DebugLogFile log;
    PrivateBus bus;
    SecretService keeper{bus.connect()};
    int changes = 0;
};

TEST_F(SecretServiceTest, a_secret_is_kept_found_replaced_and_forgotten_once_there_is_a_collection) {
    EXPECT_EQ(kept(u"sk-ấ"_s), Answer::unavailable) << "nobody there";
    EXPECT_EQ(found().first, Answer::unavailable);
    ScriptedSecretService service(bus.connect());
    ASSERT_TRUE(eventually([&] { return changes == 1; }));

    service.hasCollection = false;
    EXPECT_EQ(found().first, Answer::locked) << "it is not there yet, and nothing is lost";
    EXPECT_EQ(kept(u"sk-ấ"_s), Answer::unavailable);
    service.hasCollection = true;
    service.tell(u"CollectionCreated"_s);
    ASSERT_TRUE(eventually([&] { return changes == 2; }));
    EXPECT_EQ(found().first, Answer::absent);
    EXPECT_EQ(kept(u"sk-ấ"_s), Answer::done);
    EXPECT_EQ(found(), Found(Answer::done, u"sk-ấ"_s));
    EXPECT_EQ(kept(u"sk-2"_s), Answer::done);
    EXPECT_EQ(found(), Found(Answer::done, u"sk-2"_s));
    EXPECT_EQ(service.items.size(), 1);
    EXPECT_EQ(forgotten(), Answer::done);
    EXPECT_TRUE(service.items.isEmpty());
    EXPECT_FALSE(log.content().contains("sk-"));
}

TEST_F(SecretServiceTest, a_locked_collection_is_left_alone_until_the_user_is_there) {
    ScriptedSecretService service(bus.connect());
    ASSERT_EQ(kept(u"sk"_s), Answer::done);
    for (const Kind kind : {Kind::gnome, Kind::kwallet, Kind::keepassxc}) {
        SCOPED_TRACE(static_cast<int>(kind));
        service.kind = kind;
        service.isLocked = true;
        service.calls.clear();
        EXPECT_EQ(kept(u"sk-2"_s), Answer::locked);
        EXPECT_EQ(found().first, Answer::locked);
        EXPECT_EQ(forgotten(), Answer::locked);
        for (const QString& asking : {u"CreateItem"_s, u"Delete"_s, u"Unlock"_s, u"Prompt"_s})
            EXPECT_FALSE(service.calls.contains(asking)) << asking.toStdString();

        keeper.unlock();
        ASSERT_TRUE(eventually([&] { return service.calls.contains(u"Prompt"_s); }));
        const int before = changes;
        service.unlock();
        ASSERT_TRUE(eventually([&] { return changes == before + 1; }));
        EXPECT_EQ(found(), Found(Answer::done, u"sk"_s));
    }
}

TEST_F(SecretServiceTest, an_open_wallet_is_used_although_its_collection_is_called_locked) {
    ScriptedSecretService service(bus.connect());
    ASSERT_TRUE(eventually([&] { return changes == 1; }));
    service.kind = Kind::kwallet;
    service.isLocked = true;
    EXPECT_EQ(kept(u"sk"_s, Prompting::mustNot), Answer::locked);
    service.openWallet();
    ASSERT_TRUE(eventually([&] { return changes == 2; }));
    EXPECT_EQ(kept(u"sk"_s, Prompting::mustNot), Answer::done);
    for (const bool isFound : {true, false}) {
        service.isLocked = true;
        EXPECT_EQ(found(), isFound ? Found(Answer::done, u"sk"_s) : Found(Answer::absent, QString()));
        service.isLocked = true;
        EXPECT_EQ(forgotten(Prompting::mustNot), Answer::done);
    }
    service.isLocked = true;
    service.user = ScriptedSecretService::User::declines;
    EXPECT_EQ(found().first, Answer::locked) << "it was closed in that moment";

    const QTemporaryDir folder;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.filePath(u"home"_s)));
    qputenv("XDG_CONFIG_DIRS", QFile::encodeName(folder.path()));
    const auto restore = qScopeGuard([] { qunsetenv("XDG_CONFIG_HOME"), qunsetenv("XDG_CONFIG_DIRS"); });
    writeFile(folder.filePath(u"kwalletrc"_s), "[Wallet]\nPrompt on Open=true\n");
    for (const QByteArray& own : {"Enabled=true"_ba, "Prompt on Open=false"_ba}) {
        writeFile(folder.filePath(u"home/kwalletrc"_s), "[Wallet]\n" + own + '\n');
        service.calls.clear();
        EXPECT_EQ(found().first, Answer::locked);
        EXPECT_EQ(service.calls.contains(u"Unlock"_s), own == "Prompt on Open=false") << own.data();
    }
}

TEST_F(SecretServiceTest, prompts_are_run_only_when_the_user_has_just_changed_the_key) {
    std::optional<ScriptedSecretService> service(bus.connect());
    service->kind = Kind::keepassxc;
    EXPECT_EQ(kept(u"sk"_s, Prompting::mustNot), Answer::locked);
    EXPECT_EQ(kept(u"sk"_s), Answer::done);
    EXPECT_EQ(found(), Found(Answer::done, u"sk"_s));
    EXPECT_EQ(service->calls.count(u"Prompt"_s), 1);

    EXPECT_EQ(forgotten(Prompting::mustNot), Answer::locked);
    service->user = ScriptedSecretService::User::declines;
    EXPECT_EQ(forgotten(), Answer::locked);
    EXPECT_EQ(found(), Found(Answer::done, u"sk"_s));
    service->user = ScriptedSecretService::User::confirms;
    EXPECT_EQ(forgotten(), Answer::done);
    EXPECT_TRUE(service->items.isEmpty());

    service->user = ScriptedSecretService::User::isAway;
    service->calls.clear();
    std::optional<Answer> ended;
    keeper.keep(
        u"sk"_s, Prompting::may, [&](Answer answer) { ended = answer; });
    ASSERT_TRUE(eventually([&] { return service->calls.contains(u"Prompt"_s); }));
    service.reset();
    EXPECT_TRUE(eventually([&] { return ended == Answer::locked; })) << "the service has ended";
}

TEST_F(SecretServiceTest, an_answer_of_another_form_is_none) {
    ScriptedSecretService service(bus.connect());
    ASSERT_EQ(kept(u"sk"_s), Answer::done);
    for (const QVariantList& rubbish :
        {QVariantList(), {7}, {QVariant::fromValue(QList<int>{1})}, {u"/"_s}}) {
        service.rubbish = rubbish;
        service.rubbishMethods = {u"CreateItem"_s, u"GetSecret"_s};
        EXPECT_EQ(kept(u"sk-2"_s), Answer::unavailable);
        EXPECT_EQ(found().first, Answer::unavailable);
        service.rubbishMethods = {u"SearchItems"_s};
        EXPECT_EQ(found().first, Answer::absent);
    }
}

}  // namespace
}  // namespace tralio
