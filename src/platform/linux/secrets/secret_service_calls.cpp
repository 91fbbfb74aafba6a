#include "platform/linux/secrets/secret_service_calls.h"

#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <utility>

#include "common/debug_log.h"
#include "platform/linux/bus/bus_value.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int keeperLimit = 25'000;  // milliseconds; nothing blocks on it

const QString serviceInterface = u"org.freedesktop.Secret.Service"_s;
const QString promptInterface = u"org.freedesktop.Secret.Prompt"_s;

}  // namespace

SecretServiceCalls::SecretServiceCalls(QDBusConnection bus) : m_bus(std::move(bus)) {
    auto* watcher = new QDBusServiceWatcher(
        QLatin1String(service), m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString& /*name*/, const QString& /*old*/, const QString& owner) {
            failPrompts();
            if (!owner.isEmpty())
                tellChange();
        });
    // A collection reports in this way that it has been unlocked.
    m_bus.connect(QLatin1String(service), {}, u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s,
        {u"org.freedesktop.Secret.Collection"_s}, {}, this, SLOT(propertiesChanged(QDBusMessage)));
    // Not all services do so. KeePassXC reports the change for the whole service.
    for (const QString& event : {u"CollectionCreated"_s, u"CollectionChanged"_s})
        m_bus.connect(
            QLatin1String(service), QLatin1String(path), serviceInterface, event, this, SLOT(tellChange()));
    // KWallet reports here that a wallet was opened, and there that it was unlocked by this interface.
    m_bus.connect(
        QLatin1String(service), {}, u"org.kde.KWallet"_s, u"walletOpened"_s, this, SLOT(tellChange()));
    m_bus.connect(QLatin1String(service), {}, promptInterface, u"Completed"_s, this,
        SLOT(promptCompleted(QDBusMessage)));
}

void SecretServiceCalls::tellChange() {
    if (onChange)
        onChange();
}

void SecretServiceCalls::propertiesChanged(const QDBusMessage& signal) {
    const auto changed = busValue<QVariantMap>(signal.arguments().value(1), QLatin1StringView("a{sv}"));
    if (!changed.value(u"Locked"_s, true).toBool())
        tellChange();
}

void SecretServiceCalls::call(const QString& object, const QString& interface, const QString& method,
    const QVariantList& arguments, Start start, Take take, Fail fail) {
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
            const bool isOfOneService = method == u"isOpen";  // KWallet's
            if (watcher->error().type() != QDBusError::ServiceUnknown && !isOfOneService)
                debugLog(u"SecretService.%1: %2"_s.arg(method, watcher->error().name()));
            fail();
        });
}

void SecretServiceCalls::callService(
    const QString& method, const QVariantList& arguments, Start start, Take take, Fail fail) {
    call(QLatin1String(path), serviceInterface, method, arguments, start, std::move(take), std::move(fail));
}

void SecretServiceCalls::run(
    const QDBusObjectPath& prompt, std::function<void(const QVariant& result)> take, const Fail& fail) {
    const QString name = prompt.path();
    if (name.size() < 2) {
        fail();
        return;
    }
    m_prompts.insert(name, {std::move(take), fail});  // it may complete before the call is answered
    call(
        name, promptInterface, u"Prompt"_s, {QString()}, Start::mustNot, [](const auto&) {},
        [this, name, fail] {
            if (m_prompts.remove(name) > 0)
                fail();
        });
}

void SecretServiceCalls::promptCompleted(const QDBusMessage& signal) {
    const auto found = m_prompts.find(signal.path());
    if (found == m_prompts.end())
        return;
    const Prompt prompt = *found;
    m_prompts.erase(found);
    if (signal.arguments().value(0, true).toBool())
        prompt.fail();
    else
        prompt.take(signal.arguments().value(1).value<QDBusVariant>().variant());
}

void SecretServiceCalls::failPrompts() {
    for (const Prompt& prompt : std::exchange(m_prompts, {}))
        prompt.fail();
}

}  // namespace tralio
