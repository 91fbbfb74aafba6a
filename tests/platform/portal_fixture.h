#pragma once

#include <QGuiApplication>

#include "platform/scripted_desktop_portal.h"
#include "support/debug_log_file.h"
#include "support/fake_clock.h"
#include "support/private_bus.h"

namespace tralio {

inline constexpr Modifiers commandShift = Modifier::command | Modifier::shift;
inline const auto textShortcut = u"translate-selection.LOGO+SHIFT+d"_s;
inline const auto ocrShortcut = u"capture-screen.LOGO+SHIFT+s"_s;

struct PortalTest : testing::Test {
    ~PortalTest() override { qunsetenv("XDG_ACTIVATION_TOKEN"); }

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
        hotKeys->installStatusHandler([this](HotKeyID, HotKeyStatus status) { statuses.push_back(status); });
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
    /// The same, until it has bound them.
    [[nodiscard]] bool startBound(const std::function<void(ScriptedDesktopPortal&)>& script = {}) {
        return startAll(script) && isBound();
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
    /// Whether this comes to be the last that is told of a hot key.
    [[nodiscard]] bool isTold(HotKeyStatus status) {
        return eventually([&] { return !statuses.empty() && statuses.back() == status; });
    }
    /// A shortcut goes down and stays so, as the program comes to know.
    [[nodiscard]] bool holds(const QString& shortcut, qulonglong time) {
        const QByteArray token = QByteArray::number(time);
        desktop->hold(shortcut, time, {{u"activation_token"_s, QString::fromLatin1(token)}});
        return eventually([&] { return qgetenv("XDG_ACTIVATION_TOKEN") == token; });
    }
    [[nodiscard]] bool isLogged(const QString& text) {
        return eventually([&] { return log.messages().join(u'\n').contains(text); });
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
    std::vector<HotKeyStatus> statuses;  ///< of both hot keys
};

}  // namespace tralio
