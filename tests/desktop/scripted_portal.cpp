#include "desktop/scripted_portal.h"

#include <QDBusConnection>
#include <QDBusMetaType>

#include <stdexcept>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

const QString appearance = u"org.freedesktop.appearance"_s;
const QString colorScheme = u"color-scheme"_s;

}  // namespace

ScriptedPortal::ScriptedPortal() {
    qDBusRegisterMetaType<SettingGroups>();
    auto bus = QDBusConnection::sessionBus();
    const bool there = bus.registerObject(u"/org/freedesktop/portal/desktop"_s, this,
                           QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) &&
        bus.registerService(u"org.freedesktop.portal.Desktop"_s);
    if (!there)
        throw std::runtime_error("the portal's name is taken");
}

void ScriptedPortal::setColorScheme(uint scheme) {
    m_colorScheme = scheme;
    Q_EMIT SettingChanged(appearance, colorScheme, QDBusVariant(scheme));
}

SettingGroups ScriptedPortal::ReadAll(const QStringList& groups) const {
    return groups.contains(appearance) ? SettingGroups{{appearance, {{colorScheme, m_colorScheme}}}}
                                       : SettingGroups{};
}

QDBusVariant ScriptedPortal::Read(const QString& group, const QString& key) const {
    const bool isKnown = group == u"org.gnome.desktop.interface" && key == u"text-scaling-factor";
    return isKnown ? QDBusVariant(QVariant::fromValue(QDBusVariant(m_textScale))) : QDBusVariant(0);
}

}  // namespace tralio
