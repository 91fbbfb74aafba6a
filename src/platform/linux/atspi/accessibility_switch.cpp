#include "platform/linux/atspi/accessibility_switch.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

const QString accessibilityService = u"org.a11y.Bus"_s;
const QString accessibilityPath = u"/org/a11y/bus"_s;
const QString statusInterface = u"org.a11y.Status"_s;
const QString busProperties = u"org.freedesktop.DBus.Properties"_s;
const QString enabledProperty = u"IsEnabled"_s;

constexpr int switchLimit = 1000;  // milliseconds

}  // namespace

AccessibilitySwitch::AccessibilitySwitch() : m_bus(QDBusConnection::sessionBus()) {
    if (!m_bus.isConnected())
        return;
    m_bus.connect(accessibilityService, accessibilityPath, busProperties, u"PropertiesChanged"_s, this,
        SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
    // The launcher of the accessibility bus provides the switch. If it goes away, the accessibility bus does,
    // too.
    auto* watcher =
        new QDBusServiceWatcher(accessibilityService, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(
        watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] { read(); });
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { set(false); });
    read();
}

void AccessibilitySwitch::read() {
    auto get =
        QDBusMessage::createMethodCall(accessibilityService, accessibilityPath, busProperties, u"Get"_s);
    get << statusInterface << enabledProperty;
    auto* call = new QDBusPendingCallWatcher(m_bus.asyncCall(get), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        const QDBusPendingReply<QDBusVariant> reply = *call;
        if (reply.isValid())
            set(reply.value().variant().toBool());
        call->deleteLater();
    });
}

bool AccessibilitySwitch::turnOn() {
    if (!m_bus.isConnected())
        return false;
    auto put =
        QDBusMessage::createMethodCall(accessibilityService, accessibilityPath, busProperties, u"Set"_s);
    put << statusInterface << enabledProperty << QVariant::fromValue(QDBusVariant(true));
    if (m_bus.call(put, QDBus::Block, switchLimit).type() == QDBusMessage::ReplyMessage)
        set(true);
    return m_on;
}

void AccessibilitySwitch::propertiesChanged(
    const QString& interface, const QVariantMap& changed, const QStringList& invalidated) {
    if (interface != statusInterface)
        return;
    if (changed.contains(enabledProperty))
        set(changed.value(enabledProperty).toBool());
    else if (invalidated.contains(enabledProperty))
        read();
}

void AccessibilitySwitch::set(bool on) {
    if (std::exchange(m_on, on) != on)
        Q_EMIT changed(on);
}

}  // namespace tralio
