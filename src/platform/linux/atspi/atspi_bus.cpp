#include "platform/linux/atspi/atspi_bus.h"

#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include "common/debug_log.h"
#include "platform/linux/atspi/accessibility_switch.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

const QString connectionName = u"tralio-accessibility"_s;
const QString registry = u"org.a11y.atspi.Registry"_s;
const QString registryPath = u"/org/a11y/atspi/registry"_s;
const QString rootPath = u"/org/a11y/atspi/accessible/root"_s;
const QString busItself = u"org.freedesktop.DBus"_s;
const QString eventInterface = u"org.a11y.atspi.Event.Object"_s;
const QString windowEventInterface = u"org.a11y.atspi.Event.Window"_s;

// For window changes some toolkits send object:state-changed:active, others window:activate.
const QStringList wantedEvents{u"object:state-changed:focused"_s, u"object:state-changed:active"_s,
    u"window:activate"_s, u"window:deactivate"_s};

}  // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const AtspiReference& reference) {
    argument.beginStructure();
    argument << reference.service << reference.path;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, AtspiReference& reference) {
    argument.beginStructure();
    argument >> reference.service >> reference.path;
    argument.endStructure();
    return argument;
}

AtspiBus::~AtspiBus() {
    close();
}

void AtspiBus::follow(const AccessibilitySwitch& accessibility) {
    connect(&accessibility, &AccessibilitySwitch::changed, this, [this](bool on) {
        if (on)
            open();
    });
    if (accessibility.isOn())
        open();
}

bool AtspiBus::isOpen() const {
    return m_bus && m_bus->isConnected();
}

void AtspiBus::open() {
    if (isOpen() || std::exchange(m_opening, true))
        return;
    const auto ask = QDBusMessage::createMethodCall(
        u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s);
    auto* call = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(ask), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        m_opening = false;
        call->deleteLater();
        const QDBusPendingReply<QString> address = *call;
        if (address.isValid())
            connectTo(address.value());
        else
            debugLog(u"AtspiBus: no accessibility bus: "_s + address.error().name());
    });
}

void AtspiBus::connectTo(const QString& address) {
    close();
    m_bus = QDBusConnection::connectToBus(address, connectionName);
    if (!m_bus->isConnected()) {
        debugLog(u"AtspiBus: cannot connect: "_s + m_bus->lastError().name());
        return;
    }
    debugLog(u"AtspiBus: joined the accessibility bus"_s);
    qDBusRegisterMetaType<AtspiReference>();
    qDBusRegisterMetaType<QList<AtspiReference>>();
    listen();
}

void AtspiBus::close() {
    if (!m_bus)
        return;
    m_bus.reset();
    m_focused.clear();
    m_activeWindow = {};
    QDBusConnection::disconnectFromBus(connectionName);
}

void AtspiBus::listen() {
    for (const auto& state : {u"focused"_s, u"active"_s}) {
        m_bus->connect(QString(), QString(), eventInterface, u"StateChanged"_s, {state}, QString(), this,
            SLOT(stateChanged(QDBusMessage)));
    }
    m_bus->connect(
        QString(), QString(), windowEventInterface, u"Activate"_s, this, SLOT(windowActivated(QDBusMessage)));
    m_bus->connect(QString(), QString(), windowEventInterface, u"Deactivate"_s, this,
        SLOT(windowDeactivated(QDBusMessage)));
    m_bus->connect(busItself, QString(), busItself, u"NameOwnerChanged"_s, this,
        SLOT(ownerChanged(QString, QString, QString)));

    // When the bus goes away, reconnect at once to the one that replaces it.
    m_bus->connect(QString(), u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
        u"Disconnected"_s, this, SLOT(open()));

    // Applications send events only if some client has registered for them.
    for (const QString& event : wantedEvents) {
        auto registration =
            QDBusMessage::createMethodCall(registry, registryPath, registry, u"RegisterEvent"_s);
        registration << event << QStringList() << QString();
        m_bus->asyncCall(registration);
    }
}

std::optional<QVariantList> AtspiBus::call(const AtspiReference& object, const QString& interface,
    const QString& method, const QVariantList& arguments, const TimeBudget& budget) const {
    if (!isOpen() || object.isNull() || budget.isSpent())
        return std::nullopt;
    auto message = QDBusMessage::createMethodCall(object.service, object.path.path(), interface, method);
    message.setArguments(arguments);
    const QDBusMessage reply = m_bus->call(message, QDBus::Block, std::max(budget.left(), 1));
    return reply.type() == QDBusMessage::ReplyMessage ? std::optional(reply.arguments()) : std::nullopt;
}

QVariant AtspiBus::property(const AtspiReference& object, const QString& interface, const QString& name,
    const TimeBudget& budget) const {
    const auto reply =
        call(object, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {interface, name}, budget);
    return reply ? reply->value(0).value<QDBusVariant>().variant() : QVariant();
}

std::optional<qint32> AtspiBus::processOf(const QString& service, const TimeBudget& budget) const {
    const auto reply = call(
        {busItself, QDBusObjectPath(u"/"_s)}, busItself, u"GetConnectionUnixProcessID"_s, {service}, budget);
    return reply ? std::optional(reply->value(0).toInt()) : std::nullopt;
}

AtspiReference AtspiBus::desktop() {
    return {registry, QDBusObjectPath(rootPath)};
}

AtspiReference AtspiBus::lastFocused(qint32 processId, const TimeBudget& budget) const {
    for (auto entry = m_focused.cbegin(); entry != m_focused.cend(); ++entry)
        if (processOf(entry.key(), budget) == processId)
            return {entry.key(), entry.value()};
    return {};
}

void AtspiBus::rememberFocus(const AtspiReference& object) {
    m_focused.insert(object.service, object.path);
}

void AtspiBus::stateChanged(const QDBusMessage& event) {
    const bool on = event.arguments().value(1).toInt() == 1;
    const AtspiReference object{event.service(), QDBusObjectPath(event.path())};
    if (event.arguments().value(0).toString() == u"active")
        setActive(object, on);
    else if (on)
        rememberFocus(object);
}

void AtspiBus::windowActivated(const QDBusMessage& event) {
    setActive({event.service(), QDBusObjectPath(event.path())}, true);
}

void AtspiBus::windowDeactivated(const QDBusMessage& event) {
    setActive({event.service(), QDBusObjectPath(event.path())}, false);
}

void AtspiBus::setActive(const AtspiReference& window, bool active) {
    if (active == (m_activeWindow == window))
        return;  // a duplicate, or the end of a window after its successor has already become active
    m_activeWindow = active ? window : AtspiReference();
    ++m_activationCount;
}

void AtspiBus::ownerChanged(const QString& name, const QString& /*oldOwner*/, const QString& newOwner) {
    if (!newOwner.isEmpty())
        return;
    m_focused.remove(name);
    if (m_activeWindow.service == name)
        setActive(m_activeWindow, false);
}

}  // namespace tralio
