#include "support/private_bus.h"

#include <QUuid>

#include <stdexcept>

#include "support/bus_configuration.h"

namespace tralio {

using namespace Qt::StringLiterals;

PrivateBus::PrivateBus() {
    m_daemon.start(u"dbus-daemon"_s,
        {u"--config-file="_s + writeBusConfiguration(m_folder.path(), {}), u"--nofork"_s,
            u"--print-address=1"_s});
    if (!m_daemon.waitForReadyRead(20'000))
        throw std::runtime_error("dbus-daemon does not start");
    m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
}

PrivateBus::~PrivateBus() {
    for (const QString& connection : m_connections)
        QDBusConnection::disconnectFromBus(connection);
    m_daemon.kill();
    m_daemon.waitForFinished();
}

QDBusConnection PrivateBus::connect() {
    m_connections += QUuid::createUuid().toString();
    return QDBusConnection::connectToBus(m_address, m_connections.last());
}

}  // namespace tralio
