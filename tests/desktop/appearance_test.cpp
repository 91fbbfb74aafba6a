#include <QFile>

#include <csignal>

#include "desktop/fixtures.h"
#include "platform/scripted_bus_object.h"

namespace tralio {
namespace {

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
            const SettingGroups told{{m_appearance, {{u"color-scheme"_s, m_colorScheme}}},
                {u"org.gnome.desktop.interface"_s, {{u"text-scaling-factor"_s, m_textScale}}}};
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

TEST(Appearance, grows_with_the_text_of_the_desktop_and_follows_its_colours_while_the_popover_is_open) {
    VirtualDesktop desktop;
    ScriptedPortal portal;
    desktop.run(u"xsetroot"_s, {u"-solid"_s, u"#808080"_s});
    portal.setTextScale(1.5);
    portal.setColorScheme(1);
    ProgramRun program(desktop);
    ASSERT_TRUE(program.openByHotKey());
    const QRect area = program.popoverArea();
    EXPECT_EQ(area.width(), 530 * 3 / 2);
    EXPECT_GT(area.height(), 585) << "as far as the screen lets it";
    const auto groundLightness = [&] {  // at a place without a widget
        return desktop.screenshot().pixelColor(area.topLeft() + QPoint(30, 90)).lightness();
    };
    EXPECT_TRUE(waitUntil([&] { return groundLightness() < 60; }));
    portal.setColorScheme(2);
    EXPECT_TRUE(waitUntil([&] { return groundLightness() > 200; }));

    // A size that was changed while the program did not run. It starts anew, as the same process.
    ::kill(static_cast<pid_t>(program.processId()), SIGTERM);
    ASSERT_TRUE(waitUntil([&] { return !program.isRunning(); }));
    portal.setTextScale(1.2);
    const ProgramRun later(desktop);
    QFile told(desktop.home() + u"/.local/share/tralio/text-scale"_s);
    ASSERT_TRUE(waitUntil([&] {
        const bool is = told.open(QIODevice::ReadOnly) && told.readAll() == "1.2";
        told.close();
        return is;
    }));
    ASSERT_TRUE(waitUntil([&] {
        later.callOnBus(u"Open"_s);
        return later.isPopoverShown();
    }));
    EXPECT_EQ(later.popoverArea().width(), 530 * 6 / 5);
}

}  // namespace
}  // namespace tralio
