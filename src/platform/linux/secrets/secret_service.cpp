#include "platform/linux/secrets/secret_service.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <utility>

#include "common/debug_log.h"
#include "platform/linux/bus/bus_value.h"
#include "platform/linux/secrets/secret_item.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int keeperLimit = 25'000;  // milliseconds; nothing blocks on it

const QString serviceInterface = u"org.freedesktop.Secret.Service"_s;
const QString collectionInterface = u"org.freedesktop.Secret.Collection"_s;
const QString itemInterface = u"org.freedesktop.Secret.Item"_s;
const QString promptInterface = u"org.freedesktop.Secret.Prompt"_s;
const QString propertiesInterface = u"org.freedesktop.DBus.Properties"_s;
const QString noObject = u"/"_s;

SecretAttributes attributes() {
    return {{u"application"_s, u"org.tralio.Tralio"_s}, {u"secret"_s, u"api-key"_s}};
}

QList<QDBusObjectPath> paths(const QDBusMessage& reply, int argument) {
    return busValue<QList<QDBusObjectPath>>(reply.arguments().value(argument), QLatin1StringView("ao"));
}

QDBusObjectPath object(const QDBusMessage& reply, int argument) {
    return reply.arguments().value(argument).value<QDBusObjectPath>();
}

}  // namespace

SecretService::SecretService(QDBusConnection bus) : m_bus(std::move(bus)) {
    registerSecretTypes();
    auto* watcher = new QDBusServiceWatcher(
        QLatin1String(service), m_bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        if (onChange)
            onChange();
    });
    // A collection reports in this way that it has been unlocked.
    m_bus.connect(QLatin1String(service), {}, propertiesInterface, u"PropertiesChanged"_s,
        {collectionInterface}, {}, this, SLOT(propertiesChanged(QDBusMessage)));
    // Not all services do so. KeePassXC reports the change for the whole service.
    for (const QString& event : {u"CollectionCreated"_s, u"CollectionChanged"_s})
        m_bus.connect(QLatin1String(service), QLatin1String(path), serviceInterface, event, this,
            SLOT(collectionsChanged()));
}

void SecretService::collectionsChanged() {
    if (onChange)
        onChange();
}

void SecretService::propertiesChanged(const QDBusMessage& signal) {
    const auto changed = busValue<QVariantMap>(signal.arguments().value(1), QLatin1StringView("a{sv}"));
    if (!changed.value(u"Locked"_s, true).toBool() && onChange)
        onChange();
}

void SecretService::call(const QString& object, const QString& interface, const QString& method,
    const QVariantList& arguments, Start start, Take take, std::function<void()> fail) {
    auto message = QDBusMessage::createMethodCall(QLatin1String(service), object, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(start == Start::may);
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message, keeperLimit), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
        [watcher, method, take = std::move(take), fail = std::move(fail)] {
            watcher->deleteLater();
            if (!watcher->isError()) {
                take(watcher->reply());
                return;
            }
            if (watcher->error().type() != QDBusError::ServiceUnknown)
                debugLog(u"SecretService.%1: %2"_s.arg(method, watcher->error().name()));
            fail();
        });
}

void SecretService::callService(const QString& method, const QVariantList& arguments, Start start, Take take,
    std::function<void()> fail) {
    call(QLatin1String(path), serviceInterface, method, arguments, start, std::move(take), std::move(fail));
}

void SecretService::openSession(
    Start start, std::function<void(const QDBusObjectPath&)> then, std::function<void()> fail) {
    callService(
        u"OpenSession"_s, {u"plain"_s, QVariant::fromValue(QDBusVariant(QString()))}, start,
        [then = std::move(then)](const QDBusMessage& reply) { then(object(reply, 1)); }, std::move(fail));
}

void SecretService::findCollection(Start start, const std::function<void(const DefaultCollection&)>& then,
    const std::function<void()>& fail) {
    const auto takeAlias = [=, this](const QDBusMessage& alias) {
        const QDBusObjectPath collection = object(alias, 0);
        if (collection.path() == noObject) {
            then({});
            return;
        }
        call(
            collection.path(), propertiesInterface, u"Get"_s, {collectionInterface, u"Locked"_s}, start,
            [then, collection](const QDBusMessage& locked) {
                then({collection, locked.arguments().value(0).value<QDBusVariant>().variant().toBool()});
            },
            fail);
    };
    callService(u"ReadAlias"_s, {u"default"_s}, start, takeAlias, fail);
}

void SecretService::find(std::function<void(Answer, const QString&)> then) {
    const auto fail = [then] { then(Answer::unavailable, {}); };
    const auto takeItems = [this, then, fail](const QDBusMessage& items) {
        const QList<QDBusObjectPath> unlocked = paths(items, 0);
        if (unlocked.isEmpty() && !paths(items, 1).isEmpty()) {
            then(Answer::locked, {});
            return;
        }
        if (unlocked.isEmpty()) {
            // "Not found" is only reliable if the collection is unlocked: locked ones may hide their items.
            findCollection(
                Start::may,
                [then](const DefaultCollection& collection) {
                    then(collection.isLocked ? Answer::locked : Answer::absent, {});
                },
                fail);
            return;
        }
        openSession(
            Start::may,
            [=, this](const QDBusObjectPath& session) {
                call(
                    unlocked.first().path(), itemInterface, u"GetSecret"_s, {QVariant::fromValue(session)},
                    Start::may,
                    [then, fail](const QDBusMessage& reply) {
                        const auto secret =
                            busValue<SecretValue>(reply.arguments().value(0), QLatin1StringView("(oayays)"));
                        if (secret.session.path().isEmpty())
                            fail();
                        else
                            then(Answer::done, QString::fromUtf8(secret.value));
                    },
                    fail);
            },
            fail);
    };
    callService(u"SearchItems"_s, {QVariant::fromValue(attributes())}, Start::may, takeItems, fail);
}

void SecretService::keep(const QString& secret, std::function<void(Answer)> then) {
    const auto fail = [then] { then(Answer::unavailable); };
    const auto takeCollection = [=, this](const DefaultCollection& collection) {
        // A service would answer a write to a locked collection by asking the user.
        if (collection.path.path().isEmpty())
            fail();
        else if (collection.isLocked)
            then(Answer::locked);
        else
            openSession(
                Start::mustNot,
                [=, this](
                    const QDBusObjectPath& session) { createItem(secret, session, collection.path, then); },
                fail);
    };
    findCollection(Start::mustNot, takeCollection, fail);
}

void SecretService::createItem(const QString& secret, const QDBusObjectPath& session,
    const QDBusObjectPath& collection, const std::function<void(Answer)>& then) {
    const QVariantMap properties{{itemInterface + u".Label"_s, u"Tralio: API Key"_s},
        {itemInterface + u".Attributes"_s, QVariant::fromValue(attributes())}};
    const SecretValue value{session, {}, secret.toUtf8(), u"text/plain; charset=utf8"_s};
    call(
        collection.path(), collectionInterface, u"CreateItem"_s,
        {properties, QVariant::fromValue(value), true}, Start::mustNot,
        [then](const QDBusMessage& reply) {
            const QString item = object(reply, 0).path();
            then(item == noObject ? Answer::locked : item.isEmpty() ? Answer::unavailable : Answer::done);
        },
        [then] { then(Answer::unavailable); });
}

void SecretService::forget(std::function<void(Answer)> then) {
    const auto fail = [then] { then(Answer::unavailable); };
    const auto takeItems = [this, then, fail](const QDBusMessage& items) {
        const QList<QDBusObjectPath> locked = paths(items, 1);
        deleteItems(paths(items, 0), [=, this](Answer answer) {
            if (answer != Answer::done || !locked.isEmpty())
                then(answer == Answer::done ? Answer::locked : answer);
            else
                findCollection(
                    Start::mustNot,
                    [then](const DefaultCollection& collection) {
                        then(collection.isLocked ? Answer::locked : Answer::done);
                    },
                    fail);
        });
    };
    callService(u"SearchItems"_s, {QVariant::fromValue(attributes())}, Start::mustNot, takeItems, fail);
}

void SecretService::deleteItems(QList<QDBusObjectPath> items, const std::function<void(Answer)>& then) {
    if (items.isEmpty()) {
        then(Answer::done);
        return;
    }
    const QString item = items.takeFirst().path();
    call(
        item, itemInterface, u"Delete"_s, {}, Start::mustNot,
        [this, items, then](const QDBusMessage& reply) {
            if (object(reply, 0).path() == noObject)
                deleteItems(items, then);
            else
                then(Answer::locked);  // the service wants to ask the user
        },
        [then] { then(Answer::unavailable); });
}

void SecretService::unlock() {
    const auto ignore = [] {};
    const auto takeItems = [this, ignore](const QDBusMessage& items) {
        if (!paths(items, 0).isEmpty())
            collectionsChanged();
        else if (const QList<QDBusObjectPath> locked = paths(items, 1); !locked.isEmpty())
            unlock(locked);
        else
            findCollection(
                Start::may,
                [this](const DefaultCollection& collection) {
                    if (!collection.path.path().isEmpty())
                        unlock({collection.path});
                },
                ignore);
    };
    callService(u"SearchItems"_s, {QVariant::fromValue(attributes())}, Start::may, takeItems, ignore);
}

void SecretService::unlock(const QList<QDBusObjectPath>& objects) {
    const auto ignore = [] {};
    callService(
        u"Unlock"_s, {QVariant::fromValue(objects)}, Start::may,
        [this, ignore](const QDBusMessage& reply) {
            const QDBusObjectPath prompt = object(reply, 1);
            if (prompt.path() != noObject)
                call(
                    prompt.path(), promptInterface, u"Prompt"_s, {QString()}, Start::may, [](const auto&) {},
                    ignore);
            else
                collectionsChanged();
        },
        ignore);
}

}  // namespace tralio
