#pragma once

#include <QDBusVariant>
#include <QMap>
#include <QObject>
#include <QVariantMap>

namespace tralio {

using SettingGroups = QMap<QString, QVariantMap>;

/// The settings side of a desktop portal, on the session bus of this process, that says what a test tells it.
class ScriptedPortal final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    ScriptedPortal();

    /// What the user of a real desktop does in its settings.
    void setColorScheme(uint scheme);
    void setTextScale(double scale) { m_textScale = scale; }

public Q_SLOTS:
    tralio::SettingGroups ReadAll(const QStringList& groups) const;
    /// Wrapped twice, as in the first versions of the portal.
    QDBusVariant Read(const QString& group, const QString& key) const;

Q_SIGNALS:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    uint m_colorScheme = 0;
    double m_textScale = 1;
};

}  // namespace tralio

Q_DECLARE_METATYPE(tralio::SettingGroups)
