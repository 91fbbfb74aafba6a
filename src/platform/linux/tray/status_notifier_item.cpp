#include "platform/linux/tray/status_notifier_item.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QtEndian>

#include "common/debug_log.h"
#include "platform/linux/bus/activation_token.h"
#include "platform/linux/tray/tray_menu.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr auto itemPath = "/StatusNotifierItem"_L1;
constexpr auto watcherName = "org.kde.StatusNotifierWatcher"_L1;
constexpr auto watcherPath = "/StatusNotifierWatcher"_L1;
constexpr auto hostProperty = "IsStatusNotifierHostRegistered"_L1;

QString nameOnBus() {
    return u"org.kde.StatusNotifierItem-%1-1"_s.arg(QCoreApplication::applicationPid());
}

}  // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.pixels;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.pixels;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& toolTip) {
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.icon << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& toolTip) {
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.icon >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

StatusNotifierItem::StatusNotifierItem(const QString& title, const QIcon& icon, QDBusConnection bus)
    : m_bus(std::move(bus)), m_title(title), m_icon(icon) {
    qDBusRegisterMetaType<StatusNotifierPixmap>();
    qDBusRegisterMetaType<StatusNotifierPixmaps>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
    m_bus.registerObject(
        itemPath, this, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties);
    const auto* watcher =
        new QDBusServiceWatcher(watcherName, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, [this] {
        m_present.reset();  // a tray that replaces another does not know the item yet
        lookForTray();
    });
    // Of whatever sender: for that of a name Qt waits until the bus has told its owner.
    for (const auto& signal : {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s})
        m_bus.connect({}, watcherPath, watcherName, signal, this, SLOT(lookForTray()));
    lookForTray();
}

StatusNotifierItem::~StatusNotifierItem() {
    m_bus.unregisterObject(itemPath);
    m_bus.unregisterService(nameOnBus());
}

bool StatusNotifierItem::areThereTrays(const QDBusConnection& bus) {
    return bus.isConnected() && bus.interface()->isServiceRegistered(watcherName);
}

void StatusNotifierItem::setMenu(const QStringList& titles) {
    m_menu = std::make_unique<TrayMenu>(titles, m_bus);
    connect(m_menu.get(), &TrayMenu::chosen, this, &StatusNotifierItem::menuChosen);
}

void StatusNotifierItem::lookForTray() {
    auto ask = QDBusMessage::createMethodCall(
        watcherName, watcherPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    ask << QString(watcherName) << QString(hostProperty);
    ask.setAutoStartService(false);
    auto* answer = new QDBusPendingCallWatcher(m_bus.asyncCall(ask), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, question = ++m_question] {
        answer->deleteLater();
        if (question != m_question)
            return;  // perhaps an answer from a tray that has been replaced
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (reply.error().type() == QDBusError::NoReply) {
            lookForTray();  // the desktop is busy, as at login, or has ended meanwhile
            return;
        }
        setTray(reply.isValid() && reply.value().variant().toBool());
    });
}

void StatusNotifierItem::setTray(bool present) {
    if (m_present == present)
        return;
    m_present = present;
    debugLog(present ? u"StatusNotifierItem: a tray takes the item over the session bus"_s
                     : u"StatusNotifierItem: no tray on the session bus"_s);
    if (present)
        join();
    Q_EMIT trayChanged(present);
}

void StatusNotifierItem::join() {
    m_bus.registerService(nameOnBus());
    auto registration = QDBusMessage::createMethodCall(
        watcherName, watcherPath, watcherName, u"RegisterStatusNotifierItem"_s);
    registration << nameOnBus();
    m_bus.asyncCall(registration);
}

QString StatusNotifierItem::category() const {
    return u"ApplicationStatus"_s;
}

QString StatusNotifierItem::status() const {
    return u"Active"_s;
}

StatusNotifierPixmaps StatusNotifierItem::iconPixmap() const {
    StatusNotifierPixmaps pixmaps;
    for (const QSize& size : m_icon.availableSizes()) {
        const QImage image = m_icon.pixmap(size, 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
        StatusNotifierPixmap pixmap{image.width(), image.height(), QByteArray(image.sizeInBytes(), 0)};
        // Lines of 32-bit pixels have no padding, so all are converted at once.
        qToBigEndian<quint32>(
            image.constBits(), image.width() * qsizetype(image.height()), pixmap.pixels.data());
        pixmaps.append(pixmap);
    }
    return pixmaps;
}

StatusNotifierToolTip StatusNotifierItem::toolTip() const {
    return {.iconName = {}, .icon = {}, .title = m_title, .text = {}};
}

QDBusObjectPath StatusNotifierItem::menu() const {
    return m_menu ? TrayMenu::path() : QDBusObjectPath(u"/NO_DBUSMENU"_s);  // what trays take for "no menu"
}

void StatusNotifierItem::Activate(int x, int y) {
    Q_EMIT activated({x, y});
}

void StatusNotifierItem::ContextMenu(int x, int y) {
    Q_EMIT menuRequested({x, y});
}

void StatusNotifierItem::SecondaryActivate(int /*x*/, int /*y*/) {}

void StatusNotifierItem::Scroll(int /*delta*/, const QString& /*orientation*/) {}

void StatusNotifierItem::ProvideXdgActivationToken(const QString& token) {
    giveActivationToken(token);
}

}  // namespace tralio
