#include "platform/linux/portal/portal_shortcut.h"

#include "platform/linux/portal/portal.h"

namespace tralio {

using namespace Qt::StringLiterals;

QList<PortalShortcut> shortcutsIn(const QVariantMap& results) {
    const QVariant shortcuts = results.value(u"shortcuts"_s);
    // Taking something else apart in this way would go on without an end.
    const bool isList = shortcuts.metaType() == QMetaType::fromType<QDBusArgument>() &&
        shortcuts.value<QDBusArgument>().currentSignature() == u"a(sa{sv})";
    return isList ? qdbus_cast<QList<PortalShortcut>>(shortcuts) : QList<PortalShortcut>();
}

QString sessionIn(const QVariantMap& results) {
    const QString path = results.value(u"session_handle"_s).toString();
    return path.startsWith(QLatin1String(Portal::path) + u"/session/"_s) ? path : QString();
}

}  // namespace tralio
