#pragma once

#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QMap>
#include <QObject>
#include <QVariantMap>

#include <stdexcept>

namespace tralio {

using SettingGroups = QMap<QString, QVariantMap>;

/// The settings side of a desktop portal, on the session bus of this process, that says what a test tells it.
class ScriptedPortal final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    ScriptedPortal() {
        qDBusRegisterMetaType<SettingGroups>();
        auto bus = QDBusConnection::sessionBus();
        const bool there = bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                               QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) &&
            bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
        if (!there)
            throw std::runtime_error("the portal's name is taken");
    }

    /// What the user of a real desktop does in its settings.
    void setColorScheme(uint scheme) {
        m_colorScheme = scheme;
        Q_EMIT SettingChanged(m_appearance, QStringLiteral("color-scheme"), QDBusVariant(scheme));
    }
    void setTextScale(double scale) { m_textScale = scale; }

public Q_SLOTS:
    tralio::SettingGroups ReadAll(const QStringList& groups) const {
        SettingGroups told;
        if (groups.contains(m_appearance))
            told[m_appearance][QStringLiteral("color-scheme")] = m_colorScheme;
        return told;
    }
    /// Wrapped twice, as in the first versions of the portal.
    QDBusVariant Read(const QString& group, const QString& key) const {
        const bool isKnown = group == u"org.gnome.desktop.interface" && key == u"text-scaling-factor";
        return isKnown ? QDBusVariant(QVariant::fromValue(QDBusVariant(m_textScale))) : QDBusVariant(0);
    }

Q_SIGNALS:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    const QString m_appearance = QStringLiteral("org.freedesktop.appearance");
    uint m_colorScheme = 0;
    double m_textScale = 1;
};

}  // namespace tralio

Q_DECLARE_METATYPE(tralio::SettingGroups)
