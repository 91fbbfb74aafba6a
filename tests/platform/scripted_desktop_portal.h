#pragma once

#include "platform/linux/portal/portal.h"
#include "platform/linux/portal/portal_capture.h"
#include "platform/linux/portal/portal_hot_keys.h"
#include "platform/linux/portal/portal_shortcut.h"
#include "platform/scripted_bus_object.h"
#include "support/testing.h"

namespace tralio {

/// A desktop portal that behaves as a test tells it: the shortcuts and screenshot sides of those that are
/// about, and their bad days.
class ScriptedDesktopPortal final : public ScriptedBusObject {
public:
    explicit ScriptedDesktopPortal(QDBusConnection bus)
        : ScriptedBusObject(std::move(bus), QLatin1String(Portal::service), QLatin1String(Portal::path)) {
        qDBusRegisterMetaType<PortalShortcut>();
        qDBusRegisterMetaType<QList<PortalShortcut>>();
    }

    // How it behaves. A method that is silent is taken, and never answered.
    bool saysVersions = true;
    bool hasRegistry = true;
    bool requiresApplicationId = false;
    QStringList silentMethods;
    QString goesSilentWith;            ///< answers this method, and lists nothing from then on
    QHash<QString, uint> responses;    ///< by method; zero (granted) where none is given
    QList<PortalShortcut> remembered;  ///< from an earlier run of the program
    QString notBound;                  ///< a shortcut that it leaves out
    bool bindsAndSaysFailed = false;   ///< as GNOME 48 does: with all the results of success
    bool bindsAtCreation = false;      ///< takes the shortcuts with the session, and no others
    bool listsOnlyWhenAsked = false;   ///< answers a binding with nothing
    QString picture;                   ///< what Screenshot gives
    QVariantMap rubbish;               ///< what it gives in the place of its results

    // What has happened.
    QString applicationId;
    int versionsAsked = 0;
    QStringList calls;  ///< methods, without those for versions
    QList<PortalShortcut> bound;
    QString session;

    /// The user presses a shortcut.
    void activate(const QString& shortcut, qulonglong timestamp, const QVariantMap& options = {}) {
        hold(shortcut, timestamp, options);
        signal(QLatin1String(Portal::path), QLatin1String(PortalHotKeys::interface), u"Deactivated"_s,
            {object(session), shortcut, timestamp, options});
    }
    /// The same, and keeps it down.
    void hold(const QString& shortcut, qulonglong timestamp, const QVariantMap& options = {}) {
        signal(QLatin1String(Portal::path), QLatin1String(PortalHotKeys::interface), u"Activated"_s,
            {object(session), shortcut, timestamp, options});
    }
    void endSession() { signal(session, u"org.freedesktop.portal.Session"_s, u"Closed"_s, {}); }

private:
    void take(const QDBusMessage& call) override {
        const QString method = call.member();
        if (method == u"Get") {
            ++versionsAsked;
            const bool ofCapture = call.arguments().value(0) == QLatin1String(PortalCapture::interface);
            if (saysVersions)
                send(call.createReply(variant(ofCapture ? 2U : 1U)));
            return;
        }
        calls += method;
        if (method == u"Register" && !hasRegistry) {
            send(call.createErrorReply(QDBusError::UnknownInterface, u"no registry"_s));
        } else if (method == u"Register" && !applicationId.isEmpty()) {
            send(call.createErrorReply(u"org.freedesktop.portal.Error.Failed"_s,
                u"Connection already associated with an application ID"_s));
        } else if (method == u"Register") {
            applicationId = call.arguments().value(0).toString();
            send(call.createReply());
        } else if (method == u"Close") {
            send(call.createReply());
        } else if (method == u"CreateSession" && requiresApplicationId && applicationId.isEmpty()) {
            send(call.createErrorReply(
                u"org.freedesktop.portal.Error.NotAllowed"_s, u"An app id is required"_s));
        } else {
            request(call);
        }
    }

    void request(const QDBusMessage& call) {
        const auto options = qdbus_cast<QVariantMap>(call.arguments().last());
        const QString path = pathOf(call, u"request"_s, options.value(u"handle_token"_s));
        send(call.createReply(object(path)));
        if (silentMethods.contains(call.member()))
            return;
        if (goesSilentWith == call.member())
            silentMethods += u"ListShortcuts"_s;
        const bool saysFailed = bindsAndSaysFailed && call.member() == u"BindShortcuts";
        const uint response = saysFailed ? 2 : responses.value(call.member());
        QVariantMap results = response == 0 || saysFailed ? resultsOf(call, options) : QVariantMap();
        for (const QString& name : results.keys())
            results[name] = rubbish.value(name, results[name]);
        signal(path, u"org.freedesktop.portal.Request"_s, u"Response"_s, {response, results});
    }

    QVariantMap resultsOf(const QDBusMessage& call, const QVariantMap& options) {
        const QString method = call.member();
        if (method == u"CreateSession") {
            session = pathOf(call, u"session"_s, options.value(u"session_handle_token"_s));
            if (bindsAtCreation)
                remembered = qdbus_cast<QList<PortalShortcut>>(options.value(u"shortcuts"_s));
            return {{u"session_handle"_s, session}};
        }
        if (method == u"ListShortcuts")
            return {{u"shortcuts"_s, QVariant::fromValue(remembered)}};
        if (method == u"Screenshot")
            return {{u"uri"_s, QUrl::fromLocalFile(picture).toString()}};
        if (bindsAtCreation)
            return {};
        bound = qdbus_cast<QList<PortalShortcut>>(call.arguments().value(1));
        QList<PortalShortcut> granted;
        for (const PortalShortcut& shortcut : std::as_const(bound))
            if (shortcut.id != notBound)
                granted += {shortcut.id, {{u"trigger_description"_s, u"Super+Shift+X"_s}}};
        if (!listsOnlyWhenAsked)
            return {{u"shortcuts"_s, QVariant::fromValue(granted)}};
        remembered = granted;
        return {};
    }

    static QString pathOf(const QDBusMessage& call, const QString& kind, const QVariant& token) {
        const QString sender = call.service().mid(1).replace(u'.', u'_');
        return u"%1/%2/%3/%4"_s.arg(QLatin1String(Portal::path), kind, sender, token.toString());
    }
};

}  // namespace tralio
