#include "platform/linux/portal/portal.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>

#include "common/clock.h"
#include "common/debug_log.h"
#include "platform/linux/portal/portal_request.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr int quickAnswer = 250;    // milliseconds, for a portal that already runs
constexpr int slowAnswer = 25'000;  // for one that the call itself starts
/// How long a portal that has ended may take to come back by itself, before a call of ours starts it.
constexpr auto timeToComeBack = 5s;
const QString versionProperty = u"version"_s;

}  // namespace

QString PortalAnswer::words() const {
    switch (outcome) {
        case PortalOutcome::granted:
            return u"granted"_s;
        case PortalOutcome::cancelled:
            return u"cancelled by the user"_s;
        case PortalOutcome::silent:
            return u"no answer"_s;
        case PortalOutcome::failed:
            break;
    }
    return error.isEmpty() ? u"refused"_s : u"refused: "_s + error;
}

QDBusConnection Portal::ownConnection() {
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"tralio-portal"_s);
}

Portal::Portal(QDBusConnection bus, QStringList interfaces, Clock& clock)
    : m_bus(std::move(bus)), m_interfaces(std::move(interfaces)), m_clock(clock) {
    if (!m_bus.isConnected())
        return;
    auto* watcher = new QDBusServiceWatcher(
        QLatin1String(service), m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString& /*name*/, const QString& before, const QString& now) {
            // Both happen at once when one portal replaces another.
            if (!before.isEmpty())
                forgetPortal();
            if (!now.isEmpty())
                introduce();
        });
    auto* backends = new QDBusServiceWatcher(
        u"org.freedesktop.impl.portal.desktop*"_s, m_bus, QDBusServiceWatcher::WatchForUnregistration, this);
    connect(backends, &QDBusServiceWatcher::serviceUnregistered, this, &Portal::backendGone);
    introduce();
}

void Portal::forgetPortal() {
    ++m_introduction;
    m_versions.clear();
    m_asked.clear();
    m_knowsUs = false;
    Q_EMIT gone();
    // The bus starts the portal only when somebody calls it, and that may be nobody but us.
    m_clock.after(timeToComeBack, this, [this, introduction = m_introduction] {
        if (introduction == m_introduction)
            introduce();
    });
}

void Portal::introduce() {
    ++m_introduction;
    // Tells the portal our application id. Older portals have no Registry: they derive the id from the
    // process (its systemd unit), which therefore must stay readable in /proc.
    auto registration = QDBusMessage::createMethodCall(QLatin1String(service), QLatin1String(path),
        u"org.freedesktop.host.portal.Registry"_s, u"Register"_s);
    registration << QGuiApplication::desktopFileName() << QVariantMap();
    auto* call = new QDBusPendingCallWatcher(m_bus.asyncCall(registration), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        // A portal that was started by the call gets it twice, and refuses the second one.
        if (!call->isError())
            m_knowsUs = true;
        else if (!m_knowsUs && call->error().type() == QDBusError::Other)
            debugLog(u"Portal: this program is not known to the desktop: "_s + call->error().message());
    });
    for (const QString& interface : std::as_const(m_interfaces))
        askVersion(interface, quickAnswer);
}

void Portal::askVersion(const QString& interface, int limit) {
    auto get = QDBusMessage::createMethodCall(
        QLatin1String(service), QLatin1String(path), u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    get << interface << versionProperty;
    const QDBusPendingCall asked = m_bus.asyncCall(get, limit);
    m_asked.insert(interface, {asked, limit});
    auto* call = new QDBusPendingCallWatcher(asked, this);
    connect(call, &QDBusPendingCallWatcher::finished, this,
        [this, interface, limit, call, introduction = m_introduction] {
            call->deleteLater();
            if (introduction != m_introduction)
                return;  // an answer of an earlier portal, or from before there was one
            if (call->error().type() == QDBusError::NoReply && limit == quickAnswer)
                askVersion(interface, slowAnswer);
            else
                takeVersion(interface, *call);
        });
}

void Portal::takeVersion(const QString& interface, const QDBusPendingCall& call) {
    const QDBusPendingReply<QDBusVariant> reply = call;
    m_versions.insert(interface, reply.isValid() ? reply.value().variant().toUInt() : 0);
    if (!m_asked.remove(interface) || !m_asked.isEmpty())
        return;
    Q_EMIT ready();
}

uint Portal::awaitVersion(const QString& interface) {
    const auto asked = m_asked.constFind(interface);
    if (asked != m_asked.cend() && asked->limit == quickAnswer) {
        QDBusPendingCall call = asked->call;
        call.waitForFinished();  // bounded: the call has a time limit of its own
        const QDBusPendingReply<QDBusVariant> reply = call;
        if (reply.isValid())
            return reply.value().variant().toUInt();
    }
    return version(interface);
}

QString Portal::nextToken() {
    return u"tralio%1"_s.arg(++m_lastToken);
}

void Portal::request(const QString& interface, const QString& method, const QVariantList& arguments,
    QVariantMap options, std::chrono::milliseconds limit, QObject* context, Done done) {
    const QString token = nextToken();
    options.insert(u"handle_token"_s, token);
    auto message =
        QDBusMessage::createMethodCall(QLatin1String(service), QLatin1String(path), interface, method);
    message.setArguments(arguments + QVariantList{options});
    auto* request = new PortalRequest(m_bus, token, context, std::move(done));
    request->send(message);
    connect(this, &Portal::gone, request, [request] { request->fail(u"the portal has ended"_s); });
    if (limit.count() > 0)
        m_clock.after(limit, request, [request] { request->giveUp(); });
}

}  // namespace tralio
