#pragma once

#include <QtDBus>

#include <stdexcept>

#include "support/testing.h"

namespace tralio {

/// From now on, also lets the bus configured in `folder` start these services; the bus may be running
/// already.
inline void offerServices(const QString& folder, const QStringList& services) {
    for (const QString& service : services) {
        const QString file = QStringLiteral("/%1.service").arg(service);
        QFile::link(
            QStringLiteral("/usr/share/dbus-1/services") + file, folder + QStringLiteral("/services") + file);
    }
}

/// Writes to `folder` the configuration of a message bus that can start only the named services of this
/// machine: others must not take part in a test. Returns its path.
[[nodiscard]] inline QString writeBusConfiguration(const QString& folder, const QStringList& services) {
    QDir().mkpath(folder + QStringLiteral("/services"));
    offerServices(folder, services);
    return writeFile(folder + QStringLiteral("/bus.conf"),
        R"(<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <servicedir>)" +
            QFile::encodeName(folder) + R"(/services</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)");
}

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
