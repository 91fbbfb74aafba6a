#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QHash>
#include <QStringList>
#include <QVariantMap>

#include "platform/linux/portal/portal_shortcut.h"

namespace tralio {

/// A desktop portal that behaves as a test tells it: the shortcuts and screenshot sides of those that are
/// about, and their bad days.
class ScriptedDesktopPortal final : public QDBusVirtualObject {
public:
    /// Appears on the bus at once, in the place of one that is there.
    explicit ScriptedDesktopPortal(QDBusConnection bus);
    ~ScriptedDesktopPortal() override;

    // How it behaves. A method that is silent is taken, and never answered.
    bool saysVersions = true;
    bool hasRegistry = true;
    bool requiresApplicationId = false;
    QStringList silentMethods;
    QHash<QString, uint> responses;    ///< by method; zero (granted) where none is given
    QList<PortalShortcut> remembered;  ///< from an earlier run of the program
    QString notBound;                  ///< a shortcut that it leaves out
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
    void activate(const QString& shortcut, qulonglong timestamp, const QVariantMap& options = {});
    void endSession();

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    void request(const QDBusMessage& message);
    [[nodiscard]] QVariantMap resultsOf(const QDBusMessage& message, const QVariantMap& options);
    void signal(
        const QString& path, const QString& interface, const QString& name, const QVariantList& arguments);

    QDBusConnection m_bus;
};

}  // namespace tralio
