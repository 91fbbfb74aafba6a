#pragma once

#include <QGuiApplication>

#include "platform/linux/portal/portal_capture.h"
#include "platform/linux/portal/portal_hot_keys.h"
#include "platform/scripted_desktop_portal.h"
#include "support/event_loop.h"
#include "support/fake_clock.h"
#include "support/private_bus.h"
#include "support/testing.h"

namespace tralio {

inline constexpr Modifiers commandShift = Modifier::command | Modifier::shift;

class PortalTest : public testing::Test {
protected:
    void startPortal(const std::function<void(ScriptedDesktopPortal&)>& script = {}) {
        desktop.emplace(bus.connect());
        if (script)
            script(*desktop);
    }
    /// The program, waited for until it knows the portal, or without.
    void launch() {
        QGuiApplication::setDesktopFileName(u"org.tralio.Tralio"_s);
        portal.emplace(bus.connect(),
            QStringList{QLatin1String(PortalHotKeys::interface), QLatin1String(PortalCapture::interface)},
            clock);
        hotKeys.emplace(*portal,
            std::vector<PortalHotKeys::Purpose>{{textHotKeyID, u"translate-selection"_s, u"Dịch"_s},
                {ocrHotKeyID, u"capture-screen"_s, u"Chụp"_s}},
            clock);
        hotKeys->installEventHandler([this](std::optional<HotKeyID> id) { pressed.push_back(id->id); });
    }
    [[nodiscard]] bool startProgram() {
        launch();
        return eventually([&] { return portal->version(QLatin1String(PortalCapture::interface)) == 2; });
    }
    /// Both hot keys, with the portal's answers to come.
    void registerBoth() {
        textKey = hotKeys->registerHotKey({KeyCode::d, commandShift}, textHotKeyID);
        hotKeys->registerHotKey({KeyCode::s, commandShift}, ocrHotKeyID);
    }
    [[nodiscard]] bool isBound(qsizetype count = 2) {
        return eventually([&] { return desktop->bound.size() == count; });
    }
    [[nodiscard]] QStringList boundIds() const {
        QStringList ids;
        for (const PortalShortcut& shortcut : desktop->bound)
            ids += shortcut.id;
        return ids;
    }

    PrivateBus bus;
    FakeClock clock;
    std::optional<ScriptedDesktopPortal> desktop;
    std::optional<Portal> portal;
    std::optional<PortalHotKeys> hotKeys;
    HotKeyPlatform::Registration textKey;
    std::vector<quint32> pressed;
};

}  // namespace tralio
