#include "platform/scripted_desktop_portal.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QUrl>

#include <stdexcept>

#include "platform/linux/portal/portal.h"
#include "platform/linux/portal/portal_capture.h"
#include "platform/linux/portal/portal_hot_keys.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

QString pathOf(const QDBusMessage& message, const QString& kind, const QString& token) {
    const QString sender = message.service().mid(1).replace(u'.', u'_');
    return QLatin1String(Portal::path) + u'/' + kind + u'/' + sender + u'/' + token;
}

}  // namespace

ScriptedDesktopPortal::ScriptedDesktopPortal(QDBusConnection bus) : m_bus(std::move(bus)) {
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    const bool reachable = m_bus.registerVirtualObject(
        QLatin1String(Portal::path), this, QDBusConnection::VirtualObjectRegisterOption::SubPath);
    const auto named = m_bus.interface()->registerService(QLatin1String(Portal::service),
        QDBusConnectionInterface::ReplaceExistingService, QDBusConnectionInterface::AllowReplacement);
    if (!reachable || named != QDBusConnectionInterface::ServiceRegistered)
        throw std::runtime_error("the portal's name is taken");
}

ScriptedDesktopPortal::~ScriptedDesktopPortal() {
    m_bus.unregisterService(QLatin1String(Portal::service));
    m_bus.unregisterObject(QLatin1String(Portal::path), QDBusConnection::UnregisterTree);
}

QString ScriptedDesktopPortal::introspect(const QString& /*path*/) const {
    return {};
}

bool ScriptedDesktopPortal::handleMessage(
    const QDBusMessage& message, const QDBusConnection& /*connection*/) {
    const QString method = message.member();
    if (method == u"Get") {
        ++versionsAsked;
        if (!saysVersions)
            return true;
        const bool ofCapture = message.arguments().value(0) == QLatin1String(PortalCapture::interface);
        m_bus.send(message.createReply(QVariant::fromValue(QDBusVariant(ofCapture ? 2U : 1U))));
        return true;
    }
    calls += method;
    if (method == u"Register") {
        if (!hasRegistry) {
            m_bus.send(message.createErrorReply(QDBusError::UnknownInterface, u"no registry"_s));
        } else if (applicationId.isEmpty()) {
            applicationId = message.arguments().value(0).toString();
            m_bus.send(message.createReply());
        } else {
            m_bus.send(message.createErrorReply(u"org.freedesktop.portal.Error.Failed"_s,
                u"Connection already associated with an application ID"_s));
        }
    } else if (method == u"Close") {
        m_bus.send(message.createReply());
    } else if (method == u"CreateSession" && requiresApplicationId && applicationId.isEmpty()) {
        m_bus.send(message.createErrorReply(
            u"org.freedesktop.portal.Error.NotAllowed"_s, u"An app id is required"_s));
    } else {
        request(message);
    }
    return true;
}

void ScriptedDesktopPortal::request(const QDBusMessage& message) {
    const auto options = qdbus_cast<QVariantMap>(message.arguments().last());
    const QString path = pathOf(message, u"request"_s, options.value(u"handle_token"_s).toString());
    m_bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
    if (silentMethods.contains(message.member()))
        return;
    const uint response = responses.value(message.member());
    QVariantMap results = response == 0 ? resultsOf(message, options) : QVariantMap();
    for (const QString& name : results.keys())
        results[name] = rubbish.value(name, results[name]);
    signal(path, u"org.freedesktop.portal.Request"_s, u"Response"_s, {response, results});
}

QVariantMap ScriptedDesktopPortal::resultsOf(const QDBusMessage& message, const QVariantMap& options) {
    const QString method = message.member();
    if (method == u"CreateSession") {
        session = pathOf(message, u"session"_s, options.value(u"session_handle_token"_s).toString());
        if (bindsAtCreation)
            remembered = qdbus_cast<QList<PortalShortcut>>(options.value(u"shortcuts"_s));
        return {{u"session_handle"_s, session}};
    }
    if (method == u"ListShortcuts")
        return {{u"shortcuts"_s, QVariant::fromValue(remembered)}};
    if (method == u"BindShortcuts") {
        if (bindsAtCreation)
            return {};
        bound = qdbus_cast<QList<PortalShortcut>>(message.arguments().value(1));
        QList<PortalShortcut> granted;
        for (const PortalShortcut& shortcut : std::as_const(bound))
            if (shortcut.id != notBound)
                granted += {shortcut.id, {{u"trigger_description"_s, u"Super+Shift+X"_s}}};
        if (listsOnlyWhenAsked) {
            remembered = granted;
            return {};
        }
        return {{u"shortcuts"_s, QVariant::fromValue(granted)}};
    }
    return {{u"uri"_s, QUrl::fromLocalFile(picture).toString()}};
}

void ScriptedDesktopPortal::activate(
    const QString& shortcut, qulonglong timestamp, const QVariantMap& options) {
    signal(QLatin1String(Portal::path), QLatin1String(PortalHotKeys::interface), u"Activated"_s,
        {QVariant::fromValue(QDBusObjectPath(session)), shortcut, timestamp, options});
}

void ScriptedDesktopPortal::endSession() {
    signal(session, u"org.freedesktop.portal.Session"_s, u"Closed"_s, {});
}

void ScriptedDesktopPortal::signal(
    const QString& path, const QString& interface, const QString& name, const QVariantList& arguments) {
    auto message = QDBusMessage::createSignal(path, interface, name);
    message.setArguments(arguments);
    m_bus.send(message);
}

}  // namespace tralio
