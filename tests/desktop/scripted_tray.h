#pragma once

#include <QDBusConnection>

#include <stdexcept>

namespace tralio {

/// A tray without a window that takes its items over the session bus, as those of the large desktops do.
class ScriptedTray final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered CONSTANT)

public:
    ~ScriptedTray() override { vanish(); }

    void appear() {
        auto bus = QDBusConnection::sessionBus();
        bus.registerObject(
            m_path, this, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties);
        if (!bus.registerService(m_name))
            throw std::runtime_error("there is another tray on the session bus");
    }
    void vanish() {
        auto bus = QDBusConnection::sessionBus();
        bus.unregisterService(m_name);
        bus.unregisterObject(m_path);
        m_item.clear();
    }

    /// The bus name of the registered item; empty while there is none.
    [[nodiscard]] QString item() const { return m_item; }
    [[nodiscard]] bool isHostRegistered() const { return true; }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service) { m_item = service; }

private:
    const QString m_name = QStringLiteral("org.kde.StatusNotifierWatcher");
    const QString m_path = QStringLiteral("/StatusNotifierWatcher");
    QString m_item;
};

}  // namespace tralio
