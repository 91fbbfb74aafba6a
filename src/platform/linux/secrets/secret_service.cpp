#include "platform/linux/secrets/secret_service.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QSettings>
#include <QStandardPaths>

#include <utility>

#include "platform/linux/bus/bus_value.h"
#include "platform/linux/secrets/secret_item.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

using Take = SecretServiceCalls::Take;

const QString collectionInterface = u"org.freedesktop.Secret.Collection"_s;
const QString itemInterface = u"org.freedesktop.Secret.Item"_s;
const QString propertiesInterface = u"org.freedesktop.DBus.Properties"_s;
const QString walletInterface = u"org.kde.KWallet"_s;
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

QVariant property(const QDBusMessage& reply) {
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

/// Whether KWallet asks the user for each program that wants a wallet that is open.
bool asksForOpenWallets() {
    const auto files = QStandardPaths::locateAll(QStandardPaths::GenericConfigLocation, u"kwalletrc"_s);
    for (const QString& file : files) {
        // The user's file comes first, and may leave this to the system's.
        if (const QVariant asks = QSettings(file, QSettings::IniFormat).value(u"Wallet/Prompt on Open"_s);
            asks.isValid())
            return asks.toBool();
    }
    return false;
}

}  // namespace

SecretService::SecretService(QDBusConnection bus) : m_calls(std::move(bus)) {
    registerSecretTypes();
    m_calls.onChange = [this] {
        if (onChange)
            onChange();
    };
}

void SecretService::openSession(
    Start start, std::function<void(const QDBusObjectPath&)> then, const Fail& fail) {
    m_calls.callService(
        u"OpenSession"_s, {u"plain"_s, QVariant::fromValue(QDBusVariant(QString()))}, start,
        [then = std::move(then)](const QDBusMessage& reply) { then(object(reply, 1)); }, fail);
}

void SecretService::findCollection(
    Start start, const std::function<void(const DefaultCollection&)>& then, const Fail& fail) {
    const auto takeAlias = [=, this](const QDBusMessage& alias) {
        const QDBusObjectPath collection = object(alias, 0);
        if (collection.path() == noObject) {
            then({});
            return;
        }
        const auto askIfLocked = [=, this](const std::function<void()>& ifLocked) {
            m_calls.call(
                collection.path(), propertiesInterface, u"Get"_s, {collectionInterface, u"Locked"_s}, start,
                [=](const QDBusMessage& locked) {
                    if (property(locked).toBool())
                        ifLocked();
                    else
                        then({collection, false});
                },
                fail);
        };
        const auto locked = [=] { then({collection, true}); };
        askIfLocked([=, this] {
            unlockOpenWallet(
                collection, [=] { askIfLocked(locked); }, locked);
        });
    };
    m_calls.callService(u"ReadAlias"_s, {u"default"_s}, start, takeAlias, fail);
}

void SecretService::unlockOpenWallet(
    const QDBusObjectPath& collection, const std::function<void()>& then, const Fail& fail) {
    // WORKAROUND: KWallet 5.103 calls a collection locked until somebody has unlocked it by this interface,
    // also while its wallet is open. Unlocking it then asks the user nothing.
    const auto takeLabel = [=, this](const QDBusMessage& label) {
        ifWalletIsOpen(
            property(label).toString(), {u"kwalletd6"_s, u"kwalletd5"_s},
            [=, this] { unlock({collection}, then); }, fail);
    };
    m_calls.call(collection.path(), propertiesInterface, u"Get"_s, {collectionInterface, u"Label"_s},
        Start::mustNot, takeLabel, fail);
}

void SecretService::ifWalletIsOpen(
    const QString& wallet, QStringList versions, const std::function<void()>& then, const Fail& otherwise) {
    if (versions.isEmpty()) {
        otherwise();
        return;
    }
    const QString path = u"/modules/"_s + versions.takeFirst();
    m_calls.call(
        path, walletInterface, u"isOpen"_s, {wallet}, Start::mustNot,
        [=](const QDBusMessage& isOpen) {
            isOpen.arguments().value(0).toBool() && !asksForOpenWallets() ? then() : otherwise();
        },
        [=, this] { ifWalletIsOpen(wallet, versions, then, otherwise); });
}

void SecretService::findItems(Start start, const std::function<void(const Items&)>& then, const Fail& fail) {
    const auto takeCollection = [=, this](const DefaultCollection& collection) {
        m_calls.callService(
            u"SearchItems"_s, {QVariant::fromValue(attributes())}, start,
            [then, collection](const QDBusMessage& items) {
                then({paths(items, 0), paths(items, 1), collection});
            },
            fail);
    };
    findCollection(start, takeCollection, fail);
}

void SecretService::find(std::function<void(Answer, const QString&)> then) {
    const auto fail = [then] { then(Answer::unavailable, {}); };
    const auto takeItems = [this, then, fail](const Items& items) {
        if (items.unlocked.isEmpty()) {
            // "Not found" is only reliable if the collection is unlocked: locked ones may hide their items.
            const bool isLocked = !items.locked.isEmpty() || items.collection.isLocked;
            then(isLocked ? Answer::locked : Answer::absent, {});
            return;
        }
        const auto takeSecret = [then, fail](const QDBusMessage& reply) {
            const auto secret =
                busValue<SecretValue>(reply.arguments().value(0), QLatin1StringView("(oayays)"));
            if (secret.session.path().isEmpty())
                fail();
            else
                then(Answer::done, QString::fromUtf8(secret.value));
        };
        const QString item = items.unlocked.first().path();
        openSession(
            Start::may,
            [=, this](const QDBusObjectPath& session) {
                m_calls.call(item, itemInterface, u"GetSecret"_s, {QVariant::fromValue(session)}, Start::may,
                    takeSecret, fail);
            },
            fail);
    };
    findItems(Start::may, takeItems, fail);
}

void SecretService::keep(const QString& secret, Prompting prompting, std::function<void(Answer)> then) {
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
                [=, this](const QDBusObjectPath& session) {
                    createItem(secret, session, collection.path, prompting, then);
                },
                fail);
    };
    findCollection(Start::mustNot, takeCollection, fail);
}

void SecretService::createItem(const QString& secret, const QDBusObjectPath& session,
    const QDBusObjectPath& collection, Prompting prompting, const std::function<void(Answer)>& then) {
    const QVariantMap properties{{itemInterface + u".Label"_s, u"Tralio: API Key"_s},
        {itemInterface + u".Attributes"_s, QVariant::fromValue(attributes())}};
    const SecretValue value{session, {}, secret.toUtf8(), u"text/plain; charset=utf8"_s};
    const auto locked = [then] { then(Answer::locked); };
    const auto takeItem = [=, this](const QDBusMessage& reply) {
        const QString item = object(reply, 0).path();
        if (item != noObject)
            then(item.isEmpty() ? Answer::unavailable : Answer::done);
        else if (prompting == Prompting::mustNot)
            locked();
        else
            m_calls.run(
                object(reply, 1),
                [then](const QVariant& created) {
                    const bool isDone = created.value<QDBusObjectPath>().path().size() > 1;
                    then(isDone ? Answer::done : Answer::unavailable);
                },
                locked);
    };
    m_calls.call(collection.path(), collectionInterface, u"CreateItem"_s,
        {properties, QVariant::fromValue(value), true}, Start::mustNot, takeItem,
        [then] { then(Answer::unavailable); });
}

void SecretService::forget(Prompting prompting, std::function<void(Answer)> then) {
    const auto takeItems = [=, this](const Items& items) {
        const bool isLocked = !items.locked.isEmpty() || items.collection.isLocked;
        deleteItems(
            items.unlocked, prompting,
            [then, isLocked](
                Answer answer) { then(answer == Answer::done && isLocked ? Answer::locked : answer); });
    };
    findItems(Start::mustNot, takeItems, [then] { then(Answer::unavailable); });
}

void SecretService::deleteItems(
    QList<QDBusObjectPath> items, Prompting prompting, const std::function<void(Answer)>& then) {
    if (items.isEmpty()) {
        then(Answer::done);
        return;
    }
    const QString item = items.takeFirst().path();
    const auto goOn = [=, this] { deleteItems(items, prompting, then); };
    const auto locked = [then] { then(Answer::locked); };
    m_calls.call(
        item, itemInterface, u"Delete"_s, {}, Start::mustNot,
        [=, this](const QDBusMessage& reply) {
            const QDBusObjectPath prompt = object(reply, 0);
            if (prompt.path() == noObject)
                goOn();
            else if (prompting == Prompting::mustNot)
                locked();
            else
                m_calls.run(
                    prompt, [goOn](const QVariant&) { goOn(); }, locked);
        },
        [then] { then(Answer::unavailable); });
}

void SecretService::unlock() {
    const auto tellChange = [this] { m_calls.onChange(); };
    const auto takeItems = [this, tellChange](const Items& items) {
        if (!items.unlocked.isEmpty())
            tellChange();
        else if (!items.locked.isEmpty())
            unlock(items.locked, tellChange);
        else if (!items.collection.path.path().isEmpty())
            unlock({items.collection.path}, tellChange);
    };
    findItems(Start::may, takeItems, [] {});
}

void SecretService::unlock(const QList<QDBusObjectPath>& objects, const std::function<void()>& then) {
    const auto takeReply = [=, this](const QDBusMessage& reply) {
        const QDBusObjectPath prompt = object(reply, 1);
        if (prompt.path() == noObject)
            then();
        else
            m_calls.run(
                prompt, [then](const QVariant&) { then(); }, then);
    };
    m_calls.callService(u"Unlock"_s, {QVariant::fromValue(objects)}, Start::mustNot, takeReply, then);
}

}  // namespace tralio
