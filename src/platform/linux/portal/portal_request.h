#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include "platform/linux/portal/portal.h"

namespace tralio {

/// One call of the portal whose answer comes as a signal of a request object. Deletes itself after its
/// callback.
class PortalRequest final : public QObject {
    Q_OBJECT

public:
    PortalRequest(QDBusConnection bus, const QString& token, QObject* context, Portal::Done done);

    void send(const QDBusMessage& message);

    /// Ends the request because no answer came in time.
    void giveUp();

    /// Ends the request because no answer will come.
    void fail(const QString& error);

private Q_SLOTS:
    void respond(uint response, const QVariantMap& results);

private:
    void listenAt(const QString& path);
    void finish(const PortalAnswer& answer);

    QDBusConnection m_bus;
    QString m_path;
    Portal::Done m_done;
    bool m_finished = false;
};

}  // namespace tralio
