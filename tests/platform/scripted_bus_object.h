#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include <stdexcept>

namespace tralio {

/// A service on a bus, with all the objects below a path, whose answers a test's own code gives.
class ScriptedBusObject : public QDBusVirtualObject {
public:
    /// Appears on the bus at once, in the place of one that is there.
    ScriptedBusObject(QDBusConnection bus, const QString& service, const QString& path)
        : m_bus(std::move(bus)), m_service(service), m_path(path) {
        const auto named = m_bus.interface()->registerService(service,
            QDBusConnectionInterface::ReplaceExistingService, QDBusConnectionInterface::AllowReplacement);
        if (!m_bus.registerVirtualObject(path, this, QDBusConnection::SubPath) ||
            named != QDBusConnectionInterface::ServiceRegistered)
            throw std::runtime_error("the name of a scripted service is taken");
    }
    ~ScriptedBusObject() override {
        m_bus.unregisterService(m_service);
        m_bus.unregisterObject(m_path, QDBusConnection::UnregisterTree);
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const final { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) final {
        take(message);
        return true;
    }

protected:
    /// A call has come, which may be answered at any time.
    virtual void take(const QDBusMessage& call) = 0;

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
    const QString m_service;
    const QString m_path;
};

}  // namespace tralio
