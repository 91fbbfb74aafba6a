#include "desktop/scripted_tray.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusInterface>

#include <algorithm>
#include <stdexcept>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

const auto name = u"org.kde.StatusNotifierWatcher"_s;
const auto path = u"/StatusNotifierWatcher"_s;

QVariant propertyOf(const QString& item, const QString& property) {
    QDBusInterface properties(item, u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s);
    const auto reply = properties.call(u"Get"_s, u"org.kde.StatusNotifierItem"_s, property);
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

}  // namespace

ScriptedTray::~ScriptedTray() {
    vanish();
}

void ScriptedTray::appear() {
    auto bus = QDBusConnection::sessionBus();
    bus.registerObject(path, this, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties);
    if (!bus.registerService(name))
        throw std::runtime_error("there is another tray on the session bus");
}

void ScriptedTray::vanish() {
    auto bus = QDBusConnection::sessionBus();
    bus.unregisterService(name);
    bus.unregisterObject(path);
    m_item.clear();
}

QString ScriptedTray::toolTip() const {
    const auto argument = propertyOf(m_item, u"ToolTip"_s).value<QDBusArgument>();
    QString icon;
    QString title;
    argument.beginStructure();
    argument >> icon;
    argument.beginArray();
    argument.endArray();
    argument >> title;
    argument.endStructure();
    return title;
}

QList<int> ScriptedTray::pictures() const {
    QList<int> sides;
    const auto argument = propertyOf(m_item, u"IconPixmap"_s).value<QDBusArgument>();
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

void ScriptedTray::click(const QPoint& pixel) const {
    QDBusInterface item(m_item, u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s);
    item.asyncCall(u"Activate"_s, pixel.x(), pixel.y());
}

}  // namespace tralio
