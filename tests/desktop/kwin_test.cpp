#include "desktop/program_run.h"
#include "desktop/test_session.h"
#include "platform/linux/atspi/atspi_element.h"
#include "platform/linux/atspi/atspi_front.h"
#include "support/bus_configuration.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// A session of KDE's window manager without a screen, with the desktop portal and KDE's backend of it. No
/// key can be pressed here; its daemon of shortcuts is told that one was. The compositor and the portal are
/// an ordinary user's.
class KwinDesktop final : public TestSession {
public:
    KwinDesktop() {
        setVariable(u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s);
        installProgram();
        startBus();
        startCompositor();
        setVariable(u"WAYLAND_DISPLAY"_s, m_socket);
        // For what the bus starts, whose own environment is older than the compositor.
        run(u"dbus-update-activation-environment"_s, {u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM=wayland"_s});
        // The compositor calls the portal too: that would start it before there is a display for its
        // backend, without which the portal then stays.
        offerServices(home(),
            {u"org.freedesktop.portal.Desktop"_s, u"org.freedesktop.impl.portal.PermissionStore"_s,
                m_backend});
    }

    /// The shortcuts that this program has with the desktop.
    [[nodiscard]] QString shortcuts() const {
        return callOnBus(m_accelerators, component(), u"org.kde.kglobalaccel.Component.shortcutNames"_s);
    }
    void pressTextHotKey() const override {
        callOnBus(m_accelerators, component(), u"org.kde.kglobalaccel.Component.invokeShortcut"_s,
            {u"translate-selection.LOGO+SHIFT+d"_s});
    }
    /// Ends KDE's backend of the portal, as a crash would.
    void endPortalBackend() const {
        // "(uint32 1234,)"
        const QString process = callOnBus(u"org.freedesktop.DBus"_s, u"/"_s,
            u"org.freedesktop.DBus.GetConnectionUnixProcessID"_s, {m_backend});
        run(u"kill"_s, {process.section(u' ', 1).chopped(2)});
    }

    /// Whether a window of this title is open.
    [[nodiscard]] bool hasWindow(const QString& title) const {
        return askForWindows(u"Match"_s, {title}).contains(title);
    }
    void bringToFront(const QString& title) const {
        // "([('0_{…}', …": what to do, and with which window.
        const QString match = askForWindows(u"Match"_s, {title}).section(u'\'', 1, 1);
        askForWindows(u"Run"_s, {match, QString()});
    }

private:
    /// As the package does it: KDE knows programs by their desktop files.
    void installProgram() {
        write(u".local/share/applications/org.tralio.Tralio.desktop"_s,
            QString::fromUtf8(contentOf(QStringLiteral(TRALIO_SHARE "/org.tralio.Tralio.desktop"))));
        // A file whose program is not found counts for nothing.
        setVariable(u"PATH"_s,
            QFileInfo(QStringLiteral(TRALIO_PROGRAM)).path() + u':' + environment().value(u"PATH"_s));
    }
    void startCompositor() {
        setVariable(u"KWIN_COMPOSE"_s, u"Q"_s);  // no GL: slow without a graphics card
        // The installed file has a capability, which an ordinary user's sandbox refuses; a copy has none.
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
    /// What has this program's shortcuts there; empty where nothing has.
    [[nodiscard]] QString component() const {
        // By the application's id; where the portal knows none, by the token of our session with it.
        static const QRegularExpression ours(u"/component/(org_tralio_Tralio|(token_)?tralio)\\b"_s);
        return ours.match(components()).captured();
    }
    /// All that the daemon of shortcuts knows.
    [[nodiscard]] QString components() const {
        return callOnBus(m_accelerators, u"/kglobalaccel"_s, u"org.kde.KGlobalAccel.allComponents"_s);
    }
    /// Asks the search for windows of the desktop.
    QString askForWindows(const QString& method, const QStringList& arguments) const {
        return callOnBus(u"org.kde.KWin"_s, u"/WindowsRunner"_s, u"org.kde.krunner1."_s + method, arguments);
    }

    const QString m_socket = u"wayland-tralio"_s;
    const QString m_backend = u"org.freedesktop.impl.portal.desktop.kde"_s;
    const QString m_accelerators = u"org.kde.kglobalaccel"_s;
};

struct Kwin : testing::Test {
    Kwin() { accessibility.open(); }

    /// An editor in which a text is selected; by accessibility, for want of a keyboard.
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
            // It shows itself first, reads its file then, and the compositor may still be about to bring it
            // to the front.
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
    ProgramRun program{desktop};
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

}  // namespace
}  // namespace tralio
