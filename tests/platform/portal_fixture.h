#pragma once

#include <QGuiApplication>

#include "platform/scripted_desktop_portal.h"
#include "support/debug_log_file.h"
#include "support/event_loop.h"
#include "support/fake_clock.h"
#include "support/private_bus.h"

namespace tralio {

inline constexpr Modifiers commandShift = Modifier::command | Modifier::shift;
inline const auto textShortcut = u"translate-selection.LOGO+SHIFT+d"_s;
inline const auto ocrShortcut = u"capture-screen.LOGO+SHIFT+s"_s;

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
    /// A portal that behaves so, and the program that knows it and has registered both its hot keys, with the
    /// portal's answers to come.
    [[nodiscard]] bool startAll(const std::function<void(ScriptedDesktopPortal&)>& script = {}) {
        startPortal(script);
        const bool started = startProgram();
        registerBoth();
        return started;
    }
    void endAll() {
        hotKeys.reset();
        portal.reset();
        desktop.reset();
    }
    void registerBoth() {
        textKey = hotKeys->registerHotKey({KeyCode::d, commandShift}, textHotKeyID);
        hotKeys->registerHotKey({KeyCode::s, commandShift}, ocrHotKeyID);
    }
    HotKeyStatus registerText(KeyCode key, Modifiers modifiers = commandShift) {
        return hotKeys->registerHotKey({key, modifiers}, textHotKeyID).status;
    }
    [[nodiscard]] bool isBound(qsizetype count = 2) {
        return eventually([&] { return desktop->bound.size() == count; });
    }
    [[nodiscard]] bool isCalled(const QString& method, qsizetype times = 1) {
        return eventually([&] { return desktop->calls.count(method) == times; });
    }
    [[nodiscard]] bool isPressed(size_t times) {
        return eventually([&] { return pressed.size() == times; });
    }
    [[nodiscard]] bool isLogged(const QString& text) {
        return eventually([&] { return log.messages().join(u'\n').contains(text); });
    }
    [[nodiscard]] bool knowsNoPortal() {
        return eventually([&] { return portal->version(QLatin1String(PortalHotKeys::interface)) == 0; });
    }
    [[nodiscard]] QStringList boundIds() const {
        QStringList ids;
        for (const PortalShortcut& shortcut : desktop->bound)
            ids += shortcut.id;
        return ids;
    }
    /// The status of a capture into this file, after what is done meanwhile.
    std::optional<qint32> capture(
        const QString& path, const std::function<void()>& meanwhile = [] {}) {
        PortalCapture tool(*portal);
        std::optional<qint32> status;
        tool.run(path).then([&](qint32 value) { status = value; });
        meanwhile();
        EXPECT_TRUE(eventually([&] { return status.has_value(); }));
        return status;
    }

    DebugLogFile log;
    PrivateBus bus;
    FakeClock clock;
    std::optional<ScriptedDesktopPortal> desktop;
    std::optional<Portal> portal;
    std::optional<PortalHotKeys> hotKeys;
    HotKeyPlatform::Registration textKey;
    std::vector<quint32> pressed;
};

}  // namespace tralio
