#pragma once

#include "platform/scripted_bus_object.h"
#include "support/testing.h"

namespace tralio {

using SettingGroups = QMap<QString, QVariantMap>;

/// The Settings interface of a desktop portal, with values set by the test.
class ScriptedPortal final : public ScriptedBusObject {
public:
    ScriptedPortal() : ScriptedBusObject(toSessionBus(), u"org.freedesktop.portal.Desktop"_s, m_object) {
        qDBusRegisterMetaType<SettingGroups>();
    }

    /// As when the user changes it in the desktop's settings.
    void setColorScheme(uint scheme) {
        m_colorScheme = scheme;
        signal(m_object, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s,
            {m_appearance, u"color-scheme"_s, variant(scheme)});
    }
    void setTextScale(double scale) { m_textScale = scale; }

private:
    void take(const QDBusMessage& call) override {
        const QVariantList asked = call.arguments();
        if (call.member() == u"ReadAll" && asked.value(0).toStringList().contains(m_appearance)) {
            const SettingGroups told{{m_appearance, {{u"color-scheme"_s, m_colorScheme}}}};
            send(call.createReply(QVariant::fromValue(told)));
        } else if (asked == QVariantList{u"org.gnome.desktop.interface"_s, u"text-scaling-factor"_s}) {
            // In two nested variants, as the first versions of the portal answered.
            send(call.createReply(variant(variant(m_textScale))));
        } else {
            send(call.createErrorReply(QDBusError::UnknownMethod, u"not known"_s));
        }
    }

    static inline const auto m_object = u"/org/freedesktop/portal/desktop"_s;
    const QString m_appearance = u"org.freedesktop.appearance"_s;
    uint m_colorScheme = 0;
    double m_textScale = 1;
};

}  // namespace tralio

Q_DECLARE_METATYPE(tralio::SettingGroups)
