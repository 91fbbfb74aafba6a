#pragma once

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QIcon>
#include <QObject>
#include <QPoint>

#include <memory>
#include <optional>

namespace tralio {

class TrayMenu;

/// A picture as the protocol carries it: ARGB in network byte order.
struct StatusNotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;
};
using StatusNotifierPixmaps = QList<StatusNotifierPixmap>;

struct StatusNotifierToolTip {
    QString iconName;
    StatusNotifierPixmaps icon;
    QString title;
    QString text;
};

/// An item in trays that take items over the session bus (org.kde.StatusNotifierItem). It appears whenever
/// such a tray is there, whichever of the two starts first.
///
/// WORKAROUND: QSystemTrayIcon (Qt 6.4) looks for a tray only once per process, and drops the position of a
/// click.
class StatusNotifierItem final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ title CONSTANT)
    Q_PROPERTY(QString Title READ title CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(QString IconName READ iconName CONSTANT)
    Q_PROPERTY(tralio::StatusNotifierPixmaps IconPixmap READ iconPixmap CONSTANT)
    Q_PROPERTY(tralio::StatusNotifierToolTip ToolTip READ toolTip CONSTANT)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)

public:
    StatusNotifierItem(
        const QString& title, const QIcon& icon, QDBusConnection bus = QDBusConnection::sessionBus());
    ~StatusNotifierItem() override;

    /// Whether something collects items for trays. Asks the bus's daemon, and waits for its answer.
    [[nodiscard]] static bool areThereTrays(const QDBusConnection& bus = QDBusConnection::sessionBus());

    /// Gives the item a menu, which the tray draws. An empty title is a separator. Call this before the event
    /// loop runs: trays ask only once.
    void setMenu(const QStringList& titles);

    [[nodiscard]] QString category() const;
    [[nodiscard]] QString title() const { return m_title; }
    [[nodiscard]] QString status() const;
    [[nodiscard]] int windowId() const { return 0; }
    [[nodiscard]] QString iconName() const { return {}; }
    [[nodiscard]] StatusNotifierPixmaps iconPixmap() const;
    [[nodiscard]] StatusNotifierToolTip toolTip() const;
    [[nodiscard]] bool itemIsMenu() const { return false; }
    [[nodiscard]] QDBusObjectPath menu() const;

public Q_SLOTS:
    /// Called by the tray with the position of the click, in pixels of the screen.
    void Activate(int x, int y);
    void ContextMenu(int x, int y);
    void SecondaryActivate(int x, int y);
    void Scroll(int delta, const QString& orientation);
    /// An activation token, for desktops on which windows may not come to the front on their own.
    void ProvideXdgActivationToken(const QString& token);

Q_SIGNALS:
    /// Whether there is a tray for such items. Emitted for the first time soon after construction, in either
    /// case.
    void trayChanged(bool present);
    void activated(const QPoint& place);
    /// Emitted for trays that leave drawing the menu to the program.
    void menuRequested(const QPoint& place);
    void menuChosen(int index);

private Q_SLOTS:
    void lookForTray();

private:
    void setTray(bool present);
    void join();

    QDBusConnection m_bus;
    QString m_title;
    QIcon m_icon;
    std::unique_ptr<TrayMenu> m_menu;
    std::optional<bool> m_present;
    int m_question = 0;  ///< counts the questions: only the answer to the last one is used
};

}  // namespace tralio

Q_DECLARE_METATYPE(tralio::StatusNotifierPixmap)
Q_DECLARE_METATYPE(tralio::StatusNotifierPixmaps)
Q_DECLARE_METATYPE(tralio::StatusNotifierToolTip)
