#pragma once

#include <QDBusArgument>
#include <QVariantMap>

namespace tralio {

/// A shortcut as the GlobalShortcuts portal passes it: its id, and what is known or wished of it.
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

// What an answer of the portal tells; nothing where it is of another form.
[[nodiscard]] QList<PortalShortcut> shortcutsIn(const QVariantMap& results);
[[nodiscard]] QString sessionIn(const QVariantMap& results);

}  // namespace tralio

Q_DECLARE_METATYPE(tralio::PortalShortcut)
