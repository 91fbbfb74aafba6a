#pragma once

#include <QDBusArgument>
#include <QVariantMap>

namespace tralio {

/// A shortcut as the GlobalShortcuts portal passes it: its id, and its known or wanted properties.
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};

inline QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut) {
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut) {
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

// The contents of a portal's answer; empty if it has another form.
[[nodiscard]] QList<PortalShortcut> shortcutsIn(const QVariantMap& results);
[[nodiscard]] QString sessionIn(const QVariantMap& results);

}  // namespace tralio

Q_DECLARE_METATYPE(tralio::PortalShortcut)
