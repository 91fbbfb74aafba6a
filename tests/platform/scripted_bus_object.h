#pragma once

#include <QtDBus>

#include <stdexcept>

#include "support/testing.h"

namespace tralio {

/// A service on a connection of its own to a bus, with all the objects below a path, whose answers a test's
/// own code gives.
struct ScriptedBusObject : QDBusVirtualObject {
    /// Appears on the bus at once, in the place of one that is there.
    ScriptedBusObject(QDBusConnection bus, const QString& service, const QString& path)
        : m_bus(std::move(bus)) {
        // Whoever has waited for the name asks at once.
        if (!m_bus.registerVirtualObject(path, this, QDBusConnection::SubPath) ||
            m_bus.interface()->registerService(service, QDBusConnectionInterface::ReplaceExistingService,
                QDBusConnectionInterface::AllowReplacement) != QDBusConnectionInterface::ServiceRegistered)
            throw std::runtime_error("the name of a scripted service is taken");
    }
    /// Leaves the bus, as a program that ends.
    ~ScriptedBusObject() override { QDBusConnection::disconnectFromBus(m_bus.name()); }

    [[nodiscard]] QString introspect(const QString& /*path*/) const final { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) final {
        if (message.member() == u"Introspect")
            return false;  // the toolkit answers, for which callers may wait
        take(message);
        return true;
    }

protected:
    /// A connection to the bus of the session that the environment tells of.
    [[nodiscard]] static QDBusConnection toSessionBus() {
        return QDBusConnection::connectToBus(
            qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), QUuid::createUuid().toString());
    }
    /// A call has come, which may be answered at any time.
    virtual void take(const QDBusMessage& call) = 0;

    [[nodiscard]] QString address() const { return m_bus.baseService(); }
    void send(const QDBusMessage& message) { m_bus.send(message); }
    void signal(
        const QString& path, const QString& interface, const QString& name, const QVariantList& arguments) {
        auto message = QDBusMessage::createSignal(path, interface, name);
        message.setArguments(arguments);
        send(message);
    }
    [[nodiscard]] static QVariant variant(const QVariant& value) {
        return QVariant::fromValue(QDBusVariant(value));
    }
    [[nodiscard]] static QVariant object(const QString& path) {
        return QVariant::fromValue(QDBusObjectPath(path));
    }

private:
    QDBusConnection m_bus;
};

}  // namespace tralio
