#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>

namespace tralio {

/// A message bus of one test's own, with as many connections to it as the test wants. It starts no services.
class PrivateBus final {
public:
    PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus();

    /// One more connection, as one more program would have.
    [[nodiscard]] QDBusConnection connect();
    [[nodiscard]] QString address() const { return m_address; }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

}  // namespace tralio
