#include "platform/linux/secrets/secret_service.h"

#include <QDBusConnectionInterface>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include <algorithm>

#include "platform/linux/secrets/secret_item.h"
#include "support/debug_log_file.h"
#include "support/event_loop.h"
#include "support/private_bus.h"
#include "support/testing.h"

namespace tralio {
namespace {

using Answer = SecretKeeper::Answer;

/// A keeper of secrets with one collection, which a test locks. Some keep quiet about what a locked one
/// holds, and tell otherwise that it was unlocked.
class ScriptedSecretService final : public QDBusVirtualObject {
public:
    explicit ScriptedSecretService(QDBusConnection bus) : m_bus(std::move(bus)) {
        registerSecretTypes();
        m_bus.registerVirtualObject(
            QLatin1String(SecretService::path), this, QDBusConnection::VirtualObjectRegisterOption::SubPath);
        m_bus.registerService(QLatin1String(SecretService::service));
    }

    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) override {
        calls += message.member();
        if (!isSilent)
            m_bus.send(message.createReply(answer(message)));
        return true;
    }
    void unlock() {
        isLocked = false;
        if (isReticent) {
            tell(u"CollectionChanged"_s);
            return;
        }
        auto signal = QDBusMessage::createSignal(
            m_collection, u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s);
        signal << u"org.freedesktop.Secret.Collection"_s << QVariantMap{{u"Locked"_s, false}}
               << QStringList();
        m_bus.send(signal);
    }
    void tell(const QString& event) {
        auto signal = QDBusMessage::createSignal(
            QLatin1String(SecretService::path), u"org.freedesktop.Secret.Service"_s, event);
        signal << QVariant::fromValue(QDBusObjectPath(m_collection));
        m_bus.send(signal);
    }

    bool isLocked = false;
    bool isReticent = false;
    bool hasCollection = true;
    bool isSilent = false;
    QList<std::pair<SecretAttributes, QByteArray>> items;
    QStringList calls;

private:
    QVariantList answer(const QDBusMessage& message) {
        const auto object = [](const QString& path) { return QVariant::fromValue(QDBusObjectPath(path)); };
        const QVariantList arguments = message.arguments();
        const QString method = message.member();
        if (method == u"OpenSession") {
            EXPECT_EQ(arguments.value(0), u"plain"_s);
            return {QVariant::fromValue(QDBusVariant(QString())), object(m_session)};
        }
        if (method == u"ReadAlias")
            return {object(arguments.value(0) == u"default"_s && hasCollection ? m_collection : u"/"_s)};
        if (method == u"Get")
            return {QVariant::fromValue(QDBusVariant(isLocked))};
        if (method == u"SearchItems") {
            QList<QDBusObjectPath> found;
            const auto wanted = qdbus_cast<SecretAttributes>(arguments.value(0));
            if (std::ranges::any_of(items, [&wanted](const auto& item) { return item.first == wanted; }))
                found += QDBusObjectPath(m_item);
            const QList<QDBusObjectPath> none;
            if (isLocked && isReticent)
                found.clear();
            return {
                QVariant::fromValue(isLocked ? none : found), QVariant::fromValue(isLocked ? found : none)};
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
    QDBusConnection m_bus;
};

class SecretServiceTest : public testing::Test {
protected:
    SecretServiceTest() {
        keeper.onChange = [this] { ++changes; };
    }

    std::pair<Answer, QString> found() {
        std::optional<std::pair<Answer, QString>> result;
        keeper.find([&](Answer answer, const QString& secret) { result = {answer, secret}; });
        EXPECT_FALSE(result) << "nothing is answered before the event loop runs";
        EXPECT_TRUE(eventually([&] { return result.has_value(); }));
        return result.value_or(std::pair(Answer::unavailable, u"nothing"_s));
    }
    Answer kept(const QString& secret) {
        std::optional<Answer> result;
        keeper.keep(
            secret, [&](Answer answer) { result = answer; });
        EXPECT_TRUE(eventually([&] { return result.has_value(); }));
        return result.value_or(Answer::unavailable);
    }
    Answer forgotten() {
        std::optional<Answer> result;
        keeper.forget([&](Answer answer) { result = answer; });
        EXPECT_TRUE(eventually([&] { return result.has_value(); }));
        return result.value_or(Answer::unavailable);
    }

    DebugLogFile log;
    PrivateBus bus;
    SecretService keeper{bus.connect()};
    int changes = 0;
};

TEST_F(SecretServiceTest, a_secret_is_kept_found_replaced_and_forgotten) {
    EXPECT_EQ(kept(u"sk-ấ"_s), Answer::unavailable) << "nobody there";
    EXPECT_EQ(found().first, Answer::unavailable);
    ScriptedSecretService service(bus.connect());
    ASSERT_TRUE(eventually([&] { return changes == 1; }));

    EXPECT_EQ(found().first, Answer::absent);
    EXPECT_EQ(kept(u"sk-ấ"_s), Answer::done);
    EXPECT_EQ(found(), std::pair(Answer::done, u"sk-ấ"_s));
    EXPECT_EQ(kept(u"sk-2"_s), Answer::done);
    EXPECT_EQ(found(), std::pair(Answer::done, u"sk-2"_s));
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
        EXPECT_EQ(found(), std::pair(Answer::done, u"sk"_s));
    }
}

TEST_F(SecretServiceTest, a_keeper_whose_collections_are_not_there_yet_has_lost_nothing) {
    ScriptedSecretService service(bus.connect());
    ASSERT_TRUE(eventually([&] { return changes == 1; }));
    service.hasCollection = false;
    EXPECT_EQ(found().first, Answer::locked);
    EXPECT_EQ(kept(u"sk"_s), Answer::unavailable);
    service.hasCollection = true;
    service.tell(u"CollectionCreated"_s);
    ASSERT_TRUE(eventually([&] { return changes == 2; }));
    EXPECT_EQ(found().first, Answer::absent);
}

}  // namespace
}  // namespace tralio
