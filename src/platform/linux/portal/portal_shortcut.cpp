#include "platform/linux/portal/portal_shortcut.h"

#include "platform/linux/bus/bus_value.h"
#include "platform/linux/portal/portal.h"

namespace tralio {

using namespace Qt::StringLiterals;

QList<PortalShortcut> shortcutsIn(const QVariantMap& results) {
    return busValue<QList<PortalShortcut>>(results.value(u"shortcuts"_s), QLatin1StringView("a(sa{sv})"));
}

QString sessionIn(const QVariantMap& results) {
    const QString path = results.value(u"session_handle"_s).toString();
    return path.startsWith(QLatin1String(Portal::path) + u"/session/"_s) ? path : QString();
}

}  // namespace tralio
