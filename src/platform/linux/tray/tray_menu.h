#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

class QDBusArgument;

namespace tralio {

/// An entry as the protocol carries it (ia{sv}), in the answer to a question about several.
struct TrayMenuItem {
    int id = 0;
    QVariantMap properties;
};
using TrayMenuItems = QList<TrayMenuItem>;

/// An entry and its children, each a variant of the same form (ia{sv}av).
struct TrayMenuLayout {
    int id = 0;
    QVariantMap properties;
    QVariantList children;
};

/// An event that a tray reports for an entry (isvu).
struct TrayMenuEvent {
    int id = 0;
    QString event;
    QDBusVariant data;
    uint timestamp = 0;
};
using TrayMenuEvents = QList<TrayMenuEvent>;

QDBusArgument& operator<<(QDBusArgument& argument, const TrayMenuItem& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, TrayMenuItem& item);
QDBusArgument& operator<<(QDBusArgument& argument, const TrayMenuLayout& layout);
const QDBusArgument& operator>>(const QDBusArgument& argument, TrayMenuLayout& layout);
QDBusArgument& operator<<(QDBusArgument& argument, const TrayMenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, TrayMenuEvent& event);

/// The menu of a tray item, drawn by the tray itself (com.canonical.dbusmenu). It has one level and does not
/// change.
class TrayMenu final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)

public:
    /// An empty title is a separator.
    TrayMenu(const QStringList& titles, QDBusConnection bus);
    ~TrayMenu() override;

    [[nodiscard]] static QDBusObjectPath path();

    [[nodiscard]] uint version() const { return 3; }
    [[nodiscard]] QString textDirection() const { return QStringLiteral("ltr"); }
    [[nodiscard]] QString status() const { return QStringLiteral("normal"); }
    [[nodiscard]] QStringList iconThemePath() const { return {}; }

public Q_SLOTS:
    // Id 0 is the menu, id 1 its first entry. An empty list of names means all properties, an empty list of
    // ids all entries.
    uint GetLayout(
        int parentId, int recursionDepth, const QStringList& propertyNames, tralio::TrayMenuLayout& layout);
    tralio::TrayMenuItems GetGroupProperties(const QList<int>& ids, const QStringList& propertyNames);
    QDBusVariant GetProperty(int id, const QString& name);
    void Event(int id, const QString& event, const QDBusVariant& data, uint timestamp);
    QList<int> EventGroup(const tralio::TrayMenuEvents& events);
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

Q_SIGNALS:
    /// Emitted from the event loop, after the tray has got its reply. `index` is a position in the titles,
    /// never that of a separator.
    void chosen(int index);

private:
    [[nodiscard]] bool isKnown(int id) const { return id >= 0 && id <= m_titles.size(); }
    /// Answers the current call with an error.
    void refuse(int id);
    [[nodiscard]] QVariantMap propertiesOf(int id, const QStringList& names) const;
    /// Handles an event of an entry; false if there is no such entry.
    bool take(int id, const QString& event);

    QDBusConnection m_bus;
    QStringList m_titles;
};

}  // namespace tralio

Q_DECLARE_METATYPE(tralio::TrayMenuItem)
Q_DECLARE_METATYPE(tralio::TrayMenuItems)
Q_DECLARE_METATYPE(tralio::TrayMenuLayout)
Q_DECLARE_METATYPE(tralio::TrayMenuEvent)
Q_DECLARE_METATYPE(tralio::TrayMenuEvents)
