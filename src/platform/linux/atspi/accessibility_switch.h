#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

namespace tralio {

/// The desktop's accessibility switch (`IsEnabled` of org.a11y.Status on the session bus), which is off by
/// default. Its change signals are followed, so that asking for the state costs nothing.
class AccessibilitySwitch final : public QObject {
    Q_OBJECT

public:
    AccessibilitySwitch();

    [[nodiscard]] bool isOn() const { return m_on; }

    /// Turns the switch on and waits up to a second for the bus to confirm it. Returns whether it is on.
    bool turnOn();

Q_SIGNALS:
    void changed(bool on);

private Q_SLOTS:
    void propertiesChanged(
        const QString& interface, const QVariantMap& changed, const QStringList& invalidated);

private:
    void read();
    void set(bool on);

    QDBusConnection m_bus;
    bool m_on = false;
};

}  // namespace tralio
