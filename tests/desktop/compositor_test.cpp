#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>

#include <linux/input-event-codes.h>
#include <stdexcept>

#include "desktop/program_run.h"
#include "platform/linux/atspi/atspi_front.h"
#include "support/private_bus.h"

namespace tralio {
namespace {

/// A headless session of KWin, with the desktop portal and KDE's backend for it. Keys cannot be pressed here;
/// kglobalaccel is told that one was. Compositor and portal run as an ordinary user.
class KwinDesktop final : public TestSession {
public:
    KwinDesktop() {
        setVariable(u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s);
        installProgram();
        startBus();
        startCompositor();
        setVariable(u"WAYLAND_DISPLAY"_s, m_socket);
        // For services that the bus starts, since its environment was set before the compositor ran.
        run(u"dbus-update-activation-environment"_s, {u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM=wayland"_s});
        // The compositor calls the portal, too. That would start the portal before its backend has a display,
        // and it would then stay without a backend.
        offerServices(home(),
            {u"org.freedesktop.portal.Desktop"_s, u"org.freedesktop.impl.portal.PermissionStore"_s,
                m_backend});
    }

    /// The shortcuts that kglobalaccel has for this program.
    [[nodiscard]] QString shortcuts() const {
        return callOnBus(m_accelerators, component(), u"org.kde.kglobalaccel.Component.shortcutNames"_s);
    }
    void pressTextHotKey() const override {
        callOnBus(m_accelerators, component(), u"org.kde.kglobalaccel.Component.invokeShortcut"_s,
            {u"translate-selection.LOGO+SHIFT+d"_s});
    }
    /// Kills KDE's backend of the portal, as in a crash.
    void endPortalBackend() const {
        const auto askProcess = [this] {
            return callOnBus(u"org.freedesktop.DBus"_s, u"/"_s,
                u"org.freedesktop.DBus.GetConnectionUnixProcessID"_s, {m_backend});
        };
        const QString answer = askProcess();  // "(uint32 1234,)"
        run(u"kill"_s, {answer.section(u' ', 1).chopped(2)});
        EXPECT_TRUE(waitUntil([&] { return askProcess() != answer; }));
    }

    /// Whether a window with this title is open.
    [[nodiscard]] bool hasWindow(const QString& title) const {
        return askForWindows(u"Match"_s, {title}).contains(title);
    }
    void bringToFront(const QString& title) const {
        // "([('0_{…}', …": the action to run, with the id of the window.
        const QString match = askForWindows(u"Match"_s, {title}).section(u'\'', 1, 1);
        askForWindows(u"Run"_s, {match, QString()});
    }

private:
    /// Installs what the package installs: KDE identifies programs by their desktop files.
    void installProgram() {
        write(u".local/share/applications/org.tralio.Tralio.desktop"_s,
            QString::fromUtf8(contentOf(QStringLiteral(TRALIO_SHARE "/org.tralio.Tralio.desktop"))));
        // KDE ignores a desktop file whose program is not found.
        setVariable(u"PATH"_s,
            QFileInfo(QStringLiteral(TRALIO_PROGRAM)).path() + u':' + environment().value(u"PATH"_s));
    }
    void startCompositor() {
        setVariable(u"KWIN_COMPOSE"_s, u"Q"_s);  // no GL, which is slow without a graphics card
        // The installed file has a capability, which an ordinary user's sandbox refuses to run; a copy has
        // none.
        const QString ours = home() + u"/kwin_wayland"_s;
        QFile::copy(QStandardPaths::findExecutable(u"kwin_wayland"_s), ours);
        start(ours,
            {u"--virtual"_s, u"--width"_s, u"1280"_s, u"--height"_s, u"1024"_s, u"--socket"_s, m_socket,
                u"--no-lockscreen"_s});
        awaitStart(
            u"kwin_wayland"_s,
            [this] { return QFile::exists(home() + u"/runtime/"_s + m_socket) && !components().isEmpty(); },
            30);
    }
    /// The object path of this program's shortcuts; empty if it has none.
    [[nodiscard]] QString component() const {
        // Named after the application id, or, if the portal does not know one, after our session's token.
        static const QRegularExpression ours(u"/component/(org_tralio_Tralio|(token_)?tralio)\\b"_s);
        return ours.match(components()).captured();
    }
    /// Everything that kglobalaccel has registered.
    [[nodiscard]] QString components() const {
        return callOnBus(m_accelerators, u"/kglobalaccel"_s, u"org.kde.KGlobalAccel.allComponents"_s);
    }
    /// Calls KWin's search for windows.
    QString askForWindows(const QString& method, const QStringList& arguments) const {
        return callOnBus(u"org.kde.KWin"_s, u"/WindowsRunner"_s, u"org.kde.krunner1."_s + method, arguments);
    }

    const QString m_socket = u"wayland-tralio"_s;
    const QString m_backend = u"org.freedesktop.impl.portal.desktop.kde"_s;
    const QString m_accelerators = u"org.kde.kglobalaccel"_s;
};

struct Kwin : testing::Test {
    explicit Kwin(bool isAccessible = true) : program(switchedTo(isAccessible)) { accessibility.open(); }

    /// The desktop with its accessibility switched on or off. The programs answer the test in any case.
    KwinDesktop& switchedTo(bool isAccessible) {
        desktop.setVariable(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
        desktop.setAccessibility(isAccessible);
        return desktop;
    }

    /// Starts an editor and selects all of its text, by accessibility, since there is no keyboard.
    void startEditor(const QString& text) {
        const qint64 editor = desktop.start(u"mousepad"_s, {desktop.write(u"text.txt"_s, text)}).processId();
        ASSERT_TRUE(waitUntil([&] {
            const AtspiQuestion question{accessibility, TimeBudget(1000)};
            const AtspiReference object = findBelow(applicationOf(editor, question), question,
                [&](const AtspiReference& below) { return roleOf(below, question) == AtspiRole::text; });
            const auto call = [&](const QString& method, const QVariantList& arguments) {
                return accessibility
                    .call(object, u"org.a11y.atspi.Text"_s, method, arguments, question.budget)
                    .value_or(QVariantList());
            };
            // The window appears before the file is read, and the compositor may still be about to raise it.
            const int length = static_cast<int>(text.size());
            if (call(u"GetSelection"_s, {0}) == QVariantList{0, length})
                return activeAtspiApplication(accessibility).value_or(AtspiApplication()).processId == editor;
            if (call(u"GetText"_s, {0, -1}) == QVariantList{text})
                call(u"AddSelection"_s, {0, length});
            return false;
        }));
    }

    KwinDesktop desktop;
    AtspiBus accessibility;
    ProgramRun program;
};

TEST_F(Kwin, gives_the_hot_keys_by_its_portal_also_after_a_crash_there_and_a_press_translates_the_selection) {
    ASSERT_TRUE(waitUntil(
        [&] {
            const QString shortcuts = desktop.shortcuts();
            return shortcuts.contains(u"translate-selection.LOGO+SHIFT+d") &&
                shortcuts.contains(u"capture-screen.LOGO+SHIFT+s");
        },
        30));
    desktop.endPortalBackend();

    startEditor(u"Ngôn ngữ trong trình soạn thảo"_s);
    ASSERT_FALSE(desktop.hasWindow(u"Tralio"_s));
    EXPECT_TRUE(waitUntil([&] { return program.translateSelection() == u"Ngôn ngữ trong trình soạn thảo"; }));
    EXPECT_TRUE(waitUntil([&] { return desktop.hasWindow(u"Tralio"_s); }));
    EXPECT_TRUE(waitUntil([&] { return !program.shownTranslation().isEmpty(); }));

    desktop.bringToFront(u"text.txt"_s);
    EXPECT_TRUE(waitUntil([&] { return !desktop.hasWindow(u"Tralio"_s); }));
    EXPECT_TRUE(program.isRunning());
}

struct KwinUnaided : Kwin {
    KwinUnaided() : Kwin(false) {}
};

TEST_F(KwinUnaided, gives_what_is_selected_though_nobody_tells_which_application_is_in_front) {
    startEditor(u"Ngôn ngữ trong trình soạn thảo"_s);
    EXPECT_TRUE(waitUntil([&] { return program.translateSelection() == u"Ngôn ngữ trong trình soạn thảo"; }));
}

/// A headless session of GNOME's compositor without Xwayland, with a keyboard that the test controls. The
/// compositor offers no data control and does not report other programs' windows. A hot key is a call on the
/// session bus, as users bind it. The compositor runs as an ordinary user.
class MutterDesktop final : public TestSession {
public:
    MutterDesktop() {
        setVariable(u"XDG_CURRENT_DESKTOP"_s, u"GNOME"_s);
        startBus();
        const QString socket = u"wayland-tralio"_s;
        start(u"mutter"_s,
            {u"--headless"_s, u"--wayland"_s, u"--no-x11"_s, u"--virtual-monitor"_s, u"1280x1024"_s,
                u"--wayland-display"_s, socket});
        awaitStart(u"mutter"_s, [&] { return QFile::exists(home() + u"/runtime/"_s + socket); });
        setVariable(u"WAYLAND_DISPLAY"_s, socket);
        startRemoteInput();
    }

    void pressTextHotKey() const override {
        callOnBus(u"org.tralio.Tralio"_s, u"/org/tralio/Tralio"_s, u"org.tralio.Tralio.TranslateSelection"_s);
    }
    /// Presses keys, given as evdev codes, in order, and releases them.
    void press(const std::vector<quint32>& keys) const {
        for (const quint32 key : keys)
            input(u"NotifyKeyboardKeycode"_s, {key, true});
        for (auto key = keys.rbegin(); key != keys.rend(); ++key)
            input(u"NotifyKeyboardKeycode"_s, {*key, false});
    }

private:
    void startRemoteInput() {
        awaitStart(u"remote input"_s, [this] {
            const QDBusReply<QDBusObjectPath> session =
                QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
                    m_service, u"/org/gnome/Mutter/RemoteDesktop"_s, m_service, u"CreateSession"_s));
            m_remote = session.value().path();
            return session.isValid();
        });
        input(u"Start"_s, {});
    }
    void input(const QString& method, const QVariantList& arguments) const {
        auto call = QDBusMessage::createMethodCall(m_service, m_remote, m_service + u".Session"_s, method);
        call.setArguments(arguments);
        const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
        if (reply.type() == QDBusMessage::ErrorMessage)
            throw std::runtime_error(reply.errorMessage().toStdString());
    }

    const QString m_service = u"org.gnome.Mutter.RemoteDesktop"_s;
    QString m_remote;  ///< the object path of the compositor's remote input session
};

struct Mutter : testing::Test {
    /// Starts an editor. Returns whether it gets the focus.
    [[nodiscard]] bool startsEditor() {
        m_accessibility.connectTo(desktop.accessibilityAddress());
        desktop.start(u"mousepad"_s, {desktop.write(u"text.txt"_s, text)});
        // mutter focuses it only if another window had the focus.
        program.callOnBus(u"Open"_s);
        return waitUntil([this] { return front() == u"tralio"; }) && returnsToEditor();
    }
    /// Closes the popover once it is shown.
    [[nodiscard]] bool returnsToEditor() {
        return waitUntil([this] { return front() != u"mousepad"; }) && waitUntil([this] {
            desktop.press({KEY_ESC});
            return front() == u"mousepad";
        });
    }
    /// Selects all anew and presses the hot key. Returns whether the text reaches the model.
    [[nodiscard]] bool translatesInEditor() {
        return waitUntil(
            [this] {
                desktop.press({KEY_RIGHT});  // what stays selected would count as left over
                desktop.press({KEY_LEFTCTRL, KEY_A});
                return program.translateSelection() == text || (returnsToEditor() && false);
            },
            30);
    }
    [[nodiscard]] QString front() const {
        const auto application = activeAtspiApplication(m_accessibility);
        return application ? application->name : QString();
    }

    const QString text = u"Ngôn ngữ trong trình soạn thảo"_s;
    MutterDesktop desktop;
    ProgramRun program{desktop};

private:
    AtspiBus m_accessibility;
};

TEST_F(Mutter, gives_what_accessibility_tells_is_selected) {
    ASSERT_TRUE(startsEditor());
    EXPECT_TRUE(translatesInEditor());
    EXPECT_TRUE(waitUntil([&] { return !program.shownTranslation().isEmpty(); }));
}

TEST_F(Mutter, gives_what_is_selected_to_the_popover_once_it_has_the_focus) {
    ASSERT_TRUE(startsEditor());
    desktop.setAccessibility(false);
    // PRIMARY was empty at first, so that a later text is known to be new.
    EXPECT_EQ(program.translateSelection(), QString());
    ASSERT_TRUE(returnsToEditor());
    EXPECT_TRUE(translatesInEditor());
}

}  // namespace
}  // namespace tralio
