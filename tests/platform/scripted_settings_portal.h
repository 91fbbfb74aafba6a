#pragma once

#include "platform/scripted_bus_object.h"

namespace tralio {

using SettingGroups = QMap<QString, QVariantMap>;

inline const auto appearanceSettings = u"org.freedesktop.appearance"_s;
inline const auto gnomeSettings = u"org.gnome.desktop.interface"_s;

/// The Settings interface of a desktop portal, with values set by a test.
class ScriptedSettingsPortal final : public ScriptedBusObject {
public:
    ScriptedSettingsPortal() : ScriptedSettingsPortal(toSessionBus()) {}
    explicit ScriptedSettingsPortal(QDBusConnection bus)
        : ScriptedBusObject(std::move(bus), u"org.freedesktop.portal.Desktop"_s, m_object) {
        qDBusRegisterMetaType<SettingGroups>();
    }

    SettingGroups settings;

    /// As when the user changes it in the desktop's settings.
    void change(const QString& group, const QString& key, const QVariant& value) {
        settings[group][key] = value;
        signal(m_object, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s,
            {group, key, variant(value)});
    }

private:
    void take(const QDBusMessage& call) override {
        const QVariantList asked = call.arguments();
        const QVariant value = settings.value(asked.value(0).toString()).value(asked.value(1).toString());
        if (call.member() == u"ReadAll" && asked.value(0).toStringList().contains(appearanceSettings))
            send(call.createReply(QVariant::fromValue(settings)));
        else if (call.member() == u"Read" && value.isValid())
            // In two nested variants, as the first versions of the portal answered.
            send(call.createReply(variant(variant(value))));
        else
            send(call.createErrorReply(QDBusError::UnknownMethod, u"not known"_s));
    }

    static inline const auto m_object = u"/org/freedesktop/portal/desktop"_s;
};

}  // namespace tralio
