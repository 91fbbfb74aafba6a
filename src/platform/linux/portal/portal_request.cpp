#include "platform/linux/portal/portal_request.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

const QString requestInterface = u"org.freedesktop.portal.Request"_s;

/// The path where the portal will create the request object. Listening there at once matters: the answer may
/// arrive before the reply to the call.
QString expectedPath(const QDBusConnection& bus, const QString& token) {
    const QString sender = bus.baseService().mid(1).replace(u'.', u'_');
    return QLatin1String(Portal::path) + u"/request/"_s + sender + u'/' + token;
}

}  // namespace

PortalRequest::PortalRequest(QDBusConnection bus, const QString& token, QObject* context, Portal::Done done)
    : QObject(context), m_bus(std::move(bus)), m_done(std::move(done)) {
    listenAt(expectedPath(m_bus, token));
}

void PortalRequest::listenAt(const QString& path) {
    m_path = path;
    m_bus.connect(QLatin1String(Portal::service), path, requestInterface, u"Response"_s, this,
        SLOT(respond(uint, QVariantMap)));
}

void PortalRequest::send(const QDBusMessage& message) {
    auto* call = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *call;
        if (reply.isError())
            fail(reply.error().message());
        else if (reply.value().path() != m_path)
            listenAt(reply.value().path());  // WORKAROUND: portals before 0.9 choose the path themselves
    });
}

void PortalRequest::giveUp() {
    m_bus.send(
        QDBusMessage::createMethodCall(QLatin1String(Portal::service), m_path, requestInterface, u"Close"_s));
    finish({PortalOutcome::silent, {}, {}});
}

void PortalRequest::fail(const QString& error) {
    finish({PortalOutcome::failed, {}, error});
}

void PortalRequest::respond(uint response, const QVariantMap& results) {
    constexpr uint granted = 0;
    constexpr uint cancelled = 1;
    const auto outcome = response == granted ? PortalOutcome::granted
        : response == cancelled              ? PortalOutcome::cancelled
                                             : PortalOutcome::failed;
    finish({outcome, results, {}});
}

void PortalRequest::finish(const PortalAnswer& answer) {
    if (std::exchange(m_finished, true))
        return;
    deleteLater();
    const auto done = std::move(m_done);
    done(answer);
}

}  // namespace tralio
