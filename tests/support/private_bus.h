#pragma once

#include <QtDBus>

#include <stdexcept>

#include "support/bus_configuration.h"
#include "support/testing.h"

namespace tralio {

/// A message bus for one test, with any number of connections. It starts no services.
class PrivateBus final {
public:
    PrivateBus() {
        m_daemon.start(QStringLiteral("dbus-daemon"),
            {QStringLiteral("--config-file=") + writeBusConfiguration(m_folder.path(), {}),
                QStringLiteral("--nofork"), QStringLiteral("--print-address=1")});
        if (!m_daemon.waitForReadyRead(20'000))
            throw std::runtime_error("dbus-daemon does not start");
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() {
        for (const QString& connection : m_connections)
            QDBusConnection::disconnectFromBus(connection);
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

    /// Opens one more connection, as another program would.
    [[nodiscard]] QDBusConnection connect() {
        m_connections += QUuid::createUuid().toString();
        return QDBusConnection::connectToBus(m_address, m_connections.last());
    }
    [[nodiscard]] QString address() const { return m_address; }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

}  // namespace tralio
