#include "platform/linux/tray/tray_menu.h"

#include <QDBusArgument>
#include <QDBusMetaType>

#include <utility>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int root = 0;
constexpr uint onlyRevision = 1;

}  // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const TrayMenuItem& item) {
    argument.beginStructure();
    argument << item.id << item.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, TrayMenuItem& item) {
    argument.beginStructure();
    argument >> item.id >> item.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const TrayMenuLayout& layout) {
    argument.beginStructure();
    argument << layout.id << layout.properties << layout.children;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, TrayMenuLayout& layout) {
    argument.beginStructure();
    argument >> layout.id >> layout.properties >> layout.children;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const TrayMenuEvent& event) {
    argument.beginStructure();
    argument << event.id << event.event << event.data << event.timestamp;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, TrayMenuEvent& event) {
    argument.beginStructure();
    argument >> event.id >> event.event >> event.data >> event.timestamp;
    argument.endStructure();
    return argument;
}

TrayMenu::TrayMenu(const QStringList& titles, QDBusConnection bus) : m_bus(std::move(bus)), m_titles(titles) {
    qDBusRegisterMetaType<TrayMenuItem>();
    qDBusRegisterMetaType<TrayMenuItems>();
    qDBusRegisterMetaType<TrayMenuLayout>();
    qDBusRegisterMetaType<TrayMenuEvent>();
    qDBusRegisterMetaType<TrayMenuEvents>();
    m_bus.registerObject(
        path().path(), this, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties);
}

TrayMenu::~TrayMenu() {
    m_bus.unregisterObject(path().path());
}

QDBusObjectPath TrayMenu::path() {
    return QDBusObjectPath(u"/MenuBar"_s);
}

void TrayMenu::refuse(int id) {
    if (calledFromDBus())
        sendErrorReply(QDBusError::InvalidArgs, u"There is no entry %1"_s.arg(id));
}

QVariantMap TrayMenu::propertiesOf(int id, const QStringList& names) const {
    QVariantMap properties;
    if (id == root)
        properties = {{u"children-display"_s, u"submenu"_s}};
    else if (const QString& title = m_titles[id - 1]; title.isEmpty())
        properties = {{u"type"_s, u"separator"_s}};
    else
        // a single underscore would mark a mnemonic
        properties = {{u"label"_s, QString(title).replace(u'_', u"__"_s)}};
    if (!names.isEmpty())
        properties.removeIf([&names](const auto& entry) { return !names.contains(entry.key()); });
    return properties;
}

uint TrayMenu::GetLayout(
    int parentId, int recursionDepth, const QStringList& propertyNames, TrayMenuLayout& layout) {
    if (!isKnown(parentId)) {
        refuse(parentId);
        return 0;
    }
    layout = {parentId, propertiesOf(parentId, propertyNames), {}};
    if (parentId == root && recursionDepth != 0)
        for (int id = 1; id <= m_titles.size(); ++id)
            layout.children += QVariant::fromValue(TrayMenuLayout{id, propertiesOf(id, propertyNames), {}});
    return onlyRevision;
}

TrayMenuItems TrayMenu::GetGroupProperties(const QList<int>& ids, const QStringList& propertyNames) {
    TrayMenuItems items;
    for (int id = root; id <= m_titles.size(); ++id)
        if (ids.isEmpty() || ids.contains(id))
            items += TrayMenuItem{id, propertiesOf(id, propertyNames)};
    return items;
}

QDBusVariant TrayMenu::GetProperty(int id, const QString& name) {
    const QVariant value = isKnown(id) ? propertiesOf(id, {}).value(name) : QVariant();
    if (!value.isValid())
        refuse(id);
    return QDBusVariant(value.isValid() ? value : QVariant(QString()));
}

bool TrayMenu::take(int id, const QString& event) {
    if (!isKnown(id))
        return false;
    // A tray does not let separators be clicked, but anybody on the bus may send this.
    if (event == u"clicked" && id != root && !m_titles[id - 1].isEmpty())
        QMetaObject::invokeMethod(
            this, [this, index = id - 1] { Q_EMIT chosen(index); }, Qt::QueuedConnection);
    return true;
}

void TrayMenu::Event(int id, const QString& event, const QDBusVariant& /*data*/, uint /*timestamp*/) {
    if (!take(id, event))
        refuse(id);
}

QList<int> TrayMenu::EventGroup(const TrayMenuEvents& events) {
    QList<int> unknown;
    for (const TrayMenuEvent& event : events)
        if (!take(event.id, event.event))
            unknown += event.id;
    if (!events.isEmpty() && unknown.size() == events.size())
        refuse(unknown.constFirst());
    return unknown;
}

bool TrayMenu::AboutToShow(int id) {
    if (!isKnown(id))
        refuse(id);
    return false;
}

QList<int> TrayMenu::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) {
    for (const int id : ids)
        if (!isKnown(id))
            idErrors += id;
    return {};
}

}  // namespace tralio
