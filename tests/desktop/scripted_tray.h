#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QPoint>

#include <algorithm>
#include <stdexcept>

namespace tralio {

/// A tray that takes its items over the session bus, as those of the large desktops do, without a window.
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

    /// The bus name of the item that has come; empty while there is none.
    [[nodiscard]] QString item() const { return m_item; }
    /// The sides of the item's pictures, which have something on them; 0 for one that has nothing.
    [[nodiscard]] QList<int> pictures() const {
        QList<int> sides;
        QDBusInterface properties(
            m_item, QStringLiteral("/StatusNotifierItem"), QStringLiteral("org.freedesktop.DBus.Properties"));
        const auto reply =
            properties.call(QStringLiteral("Get"), m_itemInterface, QStringLiteral("IconPixmap"));
        const auto argument =
            reply.arguments().value(0).value<QDBusVariant>().variant().value<QDBusArgument>();
        argument.beginArray();
        while (!argument.atEnd()) {
            int width = 0;
            int height = 0;
            QByteArray pixels;
            argument.beginStructure();
            argument >> width >> height >> pixels;
            argument.endStructure();
            const bool whole = width == height && pixels.size() == qsizetype(width) * height * 4;
            const bool drawn = std::any_of(pixels.begin(), pixels.end(), [](char byte) { return byte != 0; });
            sides.append(whole && drawn ? width : 0);
        }
        argument.endArray();
        return sides;
    }
    /// What a tray does with a click on the item at this pixel of the screen.
    void click(const QPoint& pixel) const {
        QDBusInterface item(m_item, QStringLiteral("/StatusNotifierItem"), m_itemInterface);
        item.asyncCall(QStringLiteral("Activate"), pixel.x(), pixel.y());
    }

    [[nodiscard]] bool isHostRegistered() const { return true; }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service) { m_item = service; }

private:
    const QString m_name = QStringLiteral("org.kde.StatusNotifierWatcher");
    const QString m_path = QStringLiteral("/StatusNotifierWatcher");
    const QString m_itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
    QString m_item;
};

}  // namespace tralio
