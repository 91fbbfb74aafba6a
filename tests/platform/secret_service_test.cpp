#include "platform/linux/secrets/secret_service.h"

#include "platform/linux/secrets/secret_item.h"
#include "platform/scripted_bus_object.h"
#include "support/debug_log_file.h"
#include "support/private_bus.h"
#include "support/testing.h"

namespace tralio {
namespace {

using Answer = SecretKeeper::Answer;

/// A keeper of secrets with one collection, which a test locks. Some keep quiet about what a locked one
/// holds, and tell otherwise that it was unlocked.
class ScriptedSecretService final : public ScriptedBusObject {
public:
    explicit ScriptedSecretService(QDBusConnection bus)
        : ScriptedBusObject(
              std::move(bus), QLatin1String(SecretService::service), QLatin1String(SecretService::path)) {
        registerSecretTypes();
    }

    void unlock() {
        isLocked = false;
        if (isReticent)
            tell(u"CollectionChanged"_s);
        else
            signal(m_collection, u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s,
                {u"org.freedesktop.Secret.Collection"_s, QVariantMap{{u"Locked"_s, false}}, QStringList()});
    }
    void tell(const QString& event) {
        signal(QLatin1String(SecretService::path), u"org.freedesktop.Secret.Service"_s, event,
            {object(m_collection)});
    }

    bool isLocked = false;
    bool isReticent = false;
    bool hasCollection = true;
    QList<std::pair<SecretAttributes, QByteArray>> items;
    QStringList calls;
    QStringList rubbishMethods;  ///< which it answers with the rubbish
    QVariantList rubbish;

private:
    void take(const QDBusMessage& call) override {
        calls += call.member();
        send(call.createReply(
            rubbishMethods.contains(call.member()) ? rubbish : answer(call.member(), call.arguments())));
    }
    QVariantList answer(const QString& method, const QVariantList& arguments) {
        if (method == u"OpenSession") {
            EXPECT_EQ(arguments.value(0), u"plain"_s);
            return {variant(QString()), object(m_session)};
        }
        if (method == u"ReadAlias")
            return {object(arguments.value(0) == u"default"_s && hasCollection ? m_collection : u"/"_s)};
        if (method == u"Get")
            return {variant(isLocked)};
        if (method == u"SearchItems") {
            QList<QDBusObjectPath> unlocked;
            QList<QDBusObjectPath> locked;
            const auto wanted = qdbus_cast<SecretAttributes>(arguments.value(0));
            if (items.value(0).first == wanted && !(isLocked && isReticent))
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
            items = {{attributes, qdbus_cast<SecretValue>(arguments.value(1)).value}};
            return {object(m_item), object(u"/"_s)};
        }
        if (method == u"Delete")
            items.clear();
        if (method == u"Unlock") {
            const auto objects = qdbus_cast<QList<QDBusObjectPath>>(arguments.value(0));
            EXPECT_EQ(objects.size(), 1);
            EXPECT_TRUE(objects.value(0).path().startsWith(m_collection));
            return {QVariant::fromValue(QList<QDBusObjectPath>()), object(m_prompt)};
        }
        return {object(u"/"_s)};
    }

    const QString m_session = QLatin1String(SecretService::path) + u"/session/1"_s;
    const QString m_collection = QLatin1String(SecretService::path) + u"/collection/login"_s;
    const QString m_item = m_collection + u"/1"_s;
    const QString m_prompt = QLatin1String(SecretService::path) + u"/prompt/1"_s;
};

struct SecretServiceTest : testing::Test {
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
    Answer kept(const QString& secret) {
        return answerTo([&](auto done) { keeper.keep(secret, done); }).first;
    }
    Answer forgotten() {
        return answerTo([this](auto done) { keeper.forget(done); }).first;
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
    for (const bool isReticent : {false, true}) {
        SCOPED_TRACE(isReticent);
        service.isReticent = isReticent;
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
