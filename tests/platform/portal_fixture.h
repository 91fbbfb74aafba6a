#pragma once

#include <QGuiApplication>

#include "platform/linux/portal/portal_capture.h"
#include "platform/linux/portal/portal_hot_keys.h"
#include "platform/scripted_bus_object.h"
#include "support/debug_log_file.h"
#include "support/fake_clock.h"
#include "support/private_bus.h"

namespace tralio {

inline constexpr Modifiers commandShift = Modifier::command | Modifier::shift;
inline const auto textShortcut = u"translate-selection.LOGO+SHIFT+d"_s;
inline const auto ocrShortcut = u"capture-screen.LOGO+SHIFT+s"_s;

/// A desktop portal that behaves as a test tells it: the shortcuts and screenshot sides of those that are
/// about, and their bad days.
struct ScriptedDesktopPortal final : ScriptedBusObject {
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
        for (const QString& event : {u"Activated"_s, u"Deactivated"_s})
            tell(event, shortcut, timestamp, options);
    }
    void tell(
        const QString& event, const QString& shortcut, qulonglong timestamp, const QVariantMap& options) {
        signal(QLatin1String(Portal::path), QLatin1String(PortalHotKeys::interface), event,
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
        const bool isRegistration = method == u"Register";
        if (isRegistration && (!hasRegistry || !applicationId.isEmpty()))
            return send(call.createErrorReply(QDBusError::UnknownInterface, u"no registry, or not again"_s));
        if (method == u"CreateSession" && requiresApplicationId && applicationId.isEmpty())
            return send(call.createErrorReply(QDBusError::AccessDenied, u"An app id is required"_s));
        if (isRegistration)
            applicationId = call.arguments().value(0).toString();
        if (isRegistration || method == u"Close")
            send(call.createReply());
        else
            request(call);
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

struct PortalTest : testing::Test {
    ~PortalTest() override { qunsetenv("XDG_ACTIVATION_TOKEN"); }

    void startPortal(const std::function<void(ScriptedDesktopPortal&)>& script = {}) {
        desktop.emplace(bus.connect());
        if (script)
            script(*desktop);
    }
    /// The program, waited for until it knows the portal, or without.
    void launch() {
        QGuiApplication::setDesktopFileName(u"org.tralio.Tralio"_s);
        portal.emplace(bus.connect(),
            QStringList{QLatin1String(PortalHotKeys::interface), QLatin1String(PortalCapture::interface)},
            clock);
        hotKeys.emplace(*portal,
            std::vector<PortalHotKeys::Purpose>{{textHotKeyID, u"translate-selection"_s, u"Dịch"_s},
                {ocrHotKeyID, u"capture-screen"_s, u"Chụp"_s}},
            clock);
        hotKeys->installEventHandler([this](std::optional<HotKeyID> id) { pressed.push_back(id->id); });
        hotKeys->installStatusHandler([this](HotKeyID, HotKeyStatus status) { statuses.push_back(status); });
    }
    [[nodiscard]] bool startProgram() {
        launch();
        return eventually([&] { return portal->version(QLatin1String(PortalCapture::interface)) == 2; });
    }
    /// A portal that behaves so, and the program that knows it and has registered both its hot keys, with the
    /// portal's answers to come.
    [[nodiscard]] bool startAll(const std::function<void(ScriptedDesktopPortal&)>& script = {}) {
        startPortal(script);
        const bool started = startProgram();
        registerBoth();
        return started;
    }
    /// The same, until it has bound them.
    [[nodiscard]] bool startBound(const std::function<void(ScriptedDesktopPortal&)>& script = {}) {
        return startAll(script) && isBound();
    }
    void endAll() {
        hotKeys.reset();
        portal.reset();
        desktop.reset();
    }
    void registerBoth() {
        textKey = hotKeys->registerHotKey({KeyCode::d, commandShift}, textHotKeyID);
        hotKeys->registerHotKey({KeyCode::s, commandShift}, ocrHotKeyID);
    }
    HotKeyStatus registerText(KeyCode key, Modifiers modifiers = commandShift) {
        return hotKeys->registerHotKey({key, modifiers}, textHotKeyID).status;
    }
    [[nodiscard]] bool isBound(qsizetype count = 2) {
        return eventually([&] { return desktop->bound.size() == count; });
    }
    [[nodiscard]] bool isCalled(const QString& method, qsizetype times = 1) {
        return eventually([&] { return desktop->calls.count(method) == times; });
    }
    [[nodiscard]] bool isPressed(size_t times) {
        return eventually([&] { return pressed.size() == times; });
    }
    /// Whether this comes to be the last that is told of a hot key.
    [[nodiscard]] bool isTold(HotKeyStatus status) {
        return eventually([&] { return !statuses.empty() && statuses.back() == status; });
    }
    /// A shortcut goes down and stays so, as the program comes to know.
    [[nodiscard]] bool holds(const QString& shortcut, qulonglong time) {
        const QByteArray token = QByteArray::number(time);
        desktop->tell(u"Activated"_s, shortcut, time, {{u"activation_token"_s, QString::fromLatin1(token)}});
        return eventually([&] { return qgetenv("XDG_ACTIVATION_TOKEN") == token; });
    }
    [[nodiscard]] bool isLogged(const QString& text) {
        return eventually([&] { return log.messages().join(u'\n').contains(text); });
    }
    [[nodiscard]] QStringList boundIds() const {
        QStringList ids;
        for (const PortalShortcut& shortcut : desktop->bound)
            ids += shortcut.id;
        return ids;
    }
    /// The status of a capture into this file, after what is done meanwhile.
    std::optional<qint32> capture(
        const QString& path, const std::function<void()>& meanwhile = [] {}) {
        PortalCapture tool(*portal);
        std::optional<qint32> status;
        tool.run(path).then([&](qint32 value) { status = value; });
        meanwhile();
        EXPECT_TRUE(eventually([&] { return status.has_value(); }));
        return status;
    }

    DebugLogFile log;
    PrivateBus bus;
    FakeClock clock;
    std::optional<ScriptedDesktopPortal> desktop;
    std::optional<Portal> portal;
    std::optional<PortalHotKeys> hotKeys;
    HotKeyPlatform::Registration textKey;
    std::vector<quint32> pressed;
    std::vector<HotKeyStatus> statuses;  ///< of both hot keys
};

}  // namespace tralio
