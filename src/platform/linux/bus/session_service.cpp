#include "platform/linux/bus/session_service.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include <utility>

#include "common/debug_log.h"
#include "common/text_limit.h"
#include "platform/linux/bus/activation_token.h"
#include "platform/linux/bus/freedesktop_application.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr int answerLimit = 2000;  // milliseconds
constexpr auto returnInterval = 2s;

}  // namespace

SessionService::SessionService(QDBusConnection bus, Connect reconnect)
    : m_bus(std::move(bus)), m_reconnect(std::move(reconnect)) {
    new FreedesktopApplication(*this);
    m_return.setInterval(returnInterval);
    connect(&m_return, &QTimer::timeout, this, &SessionService::returnToBus);
    watchBus();
}

QDBusConnection SessionService::anotherConnection() {
    static int count = 0;
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"tralio-session-%1"_s.arg(++count));
}

void SessionService::watchBus() {
    // Qt itself emits this signal, in the name of the bus.
    m_bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s,
        this, SLOT(busEnded()));
}

void SessionService::busEnded() {
    debugLog(u"SessionService: the session bus has ended"_s);
    m_return.start();
}

void SessionService::returnToBus() {
    QDBusConnection bus = m_reconnect();
    if (!bus.isConnected()) {
        QDBusConnection::disconnectFromBus(bus.name());
        return;
    }
    m_return.stop();
    m_bus = bus;
    watchBus();
    if (claim() == Claim::claimed)
        debugLog(u"SessionService: on the session bus again"_s);
}

SessionService::~SessionService() {
    m_bus.unregisterObject(QLatin1String(path));
}

SessionService::Claim SessionService::claim() {
    if (!m_bus.isConnected()) {
        debugLog(u"SessionService: no session bus"_s);
        return Claim::noSessionBus;
    }
    // Register the object first: clients that wait for the name call as soon as it appears.
    m_bus.registerObject(
        QLatin1String(path), this, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAdaptors);
    if (m_bus.registerService(QLatin1String(name)))
        return Claim::claimed;
    m_bus.unregisterObject(QLatin1String(path));
    // A sandbox may refuse the name, too; then no instance owns it.
    const bool taken = m_bus.interface()->isServiceRegistered(QLatin1String(name));
    debugLog(taken ? u"SessionService: another instance runs"_s : u"SessionService: the name is refused"_s);
    return taken ? Claim::takenByAnother : Claim::noSessionBus;
}

bool SessionService::openRunningInstance() const {
    auto activate = QDBusMessage::createMethodCall(
        QLatin1String(name), QLatin1String(path), u"org.freedesktop.Application"_s, u"Activate"_s);
    QVariantMap platformData;
    if (const QString token = tralio::activationToken(); !token.isEmpty())
        platformData.insert(u"activation-token"_s, token);
    activate << platformData;
    const bool answered =
        m_bus.call(activate, QDBus::Block, answerLimit).type() == QDBusMessage::ReplyMessage;
    if (!answered)
        debugLog(u"SessionService: the other instance does not answer"_s);
    return answered;
}

void SessionService::Open() {
    run(m_actions.open);
}

void SessionService::TranslateSelection() {
    run(m_actions.translateSelection);
}

void SessionService::CaptureScreen() {
    run(m_actions.captureScreen);
}

void SessionService::TranslateText(const QString& text) {
    translateText(text, {});
}

void SessionService::translateText(const QString& text, const QString& activationToken) {
    if (!m_actions.translateText)
        return;
    run([this,
            taken = isTooLong(text) ? beginningOfLongText(text) : text] { m_actions.translateText(taken); },
        activationToken);
}

void SessionService::run(std::function<void()> action, const QString& activationToken) {
    if (!action)
        return;
    QMetaObject::invokeMethod(
        this,
        [action = std::move(action), activationToken] {
            giveActivationToken(activationToken);
            action();
        },
        Qt::QueuedConnection);
}

void SessionService::runNamed(
    const QString& action, const QVariantList& parameter, const QString& activationToken) {
    if (action == u"open")
        run(m_actions.open, activationToken);
    else if (action == u"translate-selection")
        run(m_actions.translateSelection, activationToken);
    else if (action == u"capture-screen")
        run(m_actions.captureScreen, activationToken);
    else if (action == u"translate-text")
        translateText(parameter.value(0).toString(), activationToken);
}

}  // namespace tralio
