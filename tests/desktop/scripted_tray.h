#pragma once

#include <QObject>
#include <QPoint>
#include <QString>

namespace tralio {

/// A tray that takes its items over the session bus, as those of the large desktops do, without a window.
class ScriptedTray final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered CONSTANT)

public:
    ~ScriptedTray() override;

    void appear();
    void vanish();

    /// The bus name of the item that has come; empty while there is none.
    [[nodiscard]] QString item() const { return m_item; }
    /// The title of the item's tooltip.
    [[nodiscard]] QString toolTip() const;
    /// The sides of the item's pictures, which have something on them; 0 for one that has nothing.
    [[nodiscard]] QList<int> pictures() const;
    /// What a tray does with a click on the item at this pixel of the screen.
    void click(const QPoint& pixel) const;

    [[nodiscard]] bool isHostRegistered() const { return true; }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service) { m_item = service; }

private:
    QString m_item;
};

}  // namespace tralio
