#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>

#include <linux/input-event-codes.h>
#include <stdexcept>

#include "desktop/program_run.h"
#include "desktop/test_session.h"
#include "platform/linux/atspi/atspi_front.h"
#include "support/testing.h"

namespace tralio {
namespace {

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

class Mutter : public testing::Test {
protected:
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
    /// Selects all and presses the hot key. Returns whether the text reaches the model.
    [[nodiscard]] bool translatesInEditor() {
        return waitUntil(
            [this] {
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
