#include "platform/linux/desktop/desktop_appearance.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

#include <utility>

#include "platform/linux/desktop/text_scale.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using SettingGroups = QMap<QString, QVariantMap>;

const QString portalService = u"org.freedesktop.portal.Desktop"_s;
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString settingsInterface = u"org.freedesktop.portal.Settings"_s;
const QString appearanceGroup = u"org.freedesktop.appearance"_s;
const QString gnomeGroup = u"org.gnome.desktop.interface"_s;
const QString textScaleKey = u"text-scaling-factor"_s;

/// A colour as the portal sends it: three numbers from 0 to 1. Numbers outside this range mean "none".
std::optional<QColor> portalColour(const QVariant& value) {
    if (value.userType() != qMetaTypeId<QDBusArgument>())
        return std::nullopt;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != u"(ddd)")
        return std::nullopt;
    double red = -1;
    double green = -1;
    double blue = -1;
    argument.beginStructure();
    argument >> red >> green >> blue;
    argument.endStructure();
    const auto valid = [](double part) { return part >= 0 && part <= 1; };
    if (!valid(red) || !valid(green) || !valid(blue))
        return std::nullopt;
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue));
}

}  // namespace

DesktopAppearance::DesktopAppearance(QDBusConnection bus) : m_bus(std::move(bus)) {
    qGuiApp->installEventFilter(this);
    if (!m_bus.isConnected())
        return;
    qDBusRegisterMetaType<SettingGroups>();
    qRegisterMetaType<QDBusVariant>();  // by its name the slot's parameter is known
    m_bus.connect(portalService, portalPath, settingsInterface, u"SettingChanged"_s, this,
        SLOT(settingChanged(QString, QString, QDBusVariant)));
    // It may be there later than we are, and start again with other settings.
    auto* watcher =
        new QDBusServiceWatcher(portalService, m_bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &DesktopAppearance::readAll);
    readAll();
}

DesktopAppearance::Look DesktopAppearance::look() const {
    const bool darkPalette = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    return {m_portalDark.value_or(darkPalette), m_accent, m_reducedMotion};
}

bool DesktopAppearance::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qGuiApp && event->type() == QEvent::ApplicationPaletteChange)
        Q_EMIT changed();
    return QObject::eventFilter(watched, event);
}

void DesktopAppearance::readAll() {
    auto read = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, u"ReadAll"_s);
    read << QStringList{appearanceGroup, gnomeGroup};
    auto* call = new QDBusPendingCallWatcher(m_bus.asyncCall(read), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        const QDBusPendingReply<SettingGroups> reply = *call;
        if (!reply.isValid())
            return;
        const Look before = look();
        const SettingGroups groups = reply.value();
        if (!groups.value(gnomeGroup).contains(textScaleKey))
            TextScale::remember(1);
        for (auto group = groups.cbegin(); group != groups.cend(); ++group)
            for (auto setting = group->cbegin(); setting != group->cend(); ++setting)
                apply(group.key(), setting.key(), setting.value());
        if (look() != before)
            Q_EMIT changed();
    });
}

void DesktopAppearance::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    const Look before = look();
    apply(group, key, value.variant());
    if (look() != before)
        Q_EMIT changed();
}

void DesktopAppearance::apply(const QString& group, const QString& key, const QVariant& value) {
    if (group == appearanceGroup && key == u"color-scheme") {
        constexpr uint noPreference = 0;
        constexpr uint preferDark = 1;
        const uint scheme = value.toUInt();
        m_portalDark = scheme == noPreference ? std::nullopt : std::optional(scheme == preferDark);
    } else if (group == appearanceGroup && key == u"accent-color") {
        m_accent = portalColour(value);
    } else if (group == gnomeGroup && key == u"enable-animations") {
        m_reducedMotion = !value.toBool();
    } else if (group == gnomeGroup && key == textScaleKey) {
        TextScale::remember(value.toDouble());
    }
}

}  // namespace tralio
