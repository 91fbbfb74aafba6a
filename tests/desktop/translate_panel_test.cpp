#include <QtDBus>

#include "desktop/fixtures.h"

namespace tralio {

/// Hears what a screen reader reads out by itself.
class AlertListener final : public QObject {
    Q_OBJECT

public:
    explicit AlertListener(const QString& address)
        : m_bus(QDBusConnection::connectToBus(address, u"listener"_s)) {
        m_bus.connect(QString(), QString(), u"org.a11y.atspi.Event.Object"_s, u"StateChanged"_s,
            {u"showing"_s}, QString(), this, SLOT(changed(QDBusMessage)));
        const QString registry = u"org.a11y.atspi.Registry"_s;
        auto wish = QDBusMessage::createMethodCall(
            registry, u"/org/a11y/atspi/registry"_s, registry, u"RegisterEvent"_s);
        wish << u"object:state-changed:showing"_s << QStringList() << QString();
        m_bus.call(wish);
    }
    ~AlertListener() override { QDBusConnection::disconnectFromBus(m_bus.name()); }

    int alerts = 0;

private Q_SLOTS:
    void changed(const QDBusMessage& event) {
        constexpr uint alert = 2;
        const auto question = QDBusMessage::createMethodCall(
            event.service(), event.path(), u"org.a11y.atspi.Accessible"_s, u"GetRole"_s);
        if (event.arguments().value(1).toBool() && m_bus.call(question).arguments().value(0) == alert)
            ++alerts;
    }

private:
    QDBusConnection m_bus;
};

namespace {

using TranslatePanelOnScreen = OnDesktop;

TEST_F(TranslatePanelOnScreen, a_typed_text_is_translated_and_the_result_pasted_into_another_program) {
    const QString translation = u"Chào buổi sáng, thế giới"_s;
    program.standIn().translatesTo(translation);
    ASSERT_TRUE(program.openByHotKey());
    const AlertListener told(desktop.accessibilityAddress());
    desktop.repeatsFast();
    desktop.type(u"good morning, world"_s);
    desktop.hold({u"Return"_s});
    ASSERT_TRUE(program.isAsked(u"good morning, world"_s));
    EXPECT_FALSE(waitUntil([&] { return program.standIn().requests().size() > 1; }, 1)) << "it is still held";
    desktop.release({u"Return"_s});
    EXPECT_TRUE(waitUntil([&] { return told.alerts == 1; })) << "a screen reader hears nothing of it";
    ASSERT_TRUE(program.click(u"Sao chép"_s));
    ASSERT_TRUE(program.comes(u"Đã chép!"_s));
    EXPECT_EQ(told.alerts, 1) << "it hears of it twice";
    desktop.press(u"Escape"_s);

    desktop.startInFront(u"mousepad"_s, u"mousepad"_s);
    desktop.press(u"ctrl+v"_s);
    EXPECT_TRUE(desktop.selectsAll(translation));
    EXPECT_EQ(program.translateSelection(), translation);
}

TEST_F(TranslatePanelOnScreen, one_click_pastes_what_is_copied_and_the_middle_button_what_is_marked) {
    ASSERT_TRUE(program.openByHotKey());
    desktop.setClipboard(u"copied elsewhere"_s);
    ASSERT_TRUE(program.click(u"Dán & Tralio"_s));
    EXPECT_TRUE(program.isAsked(u"copied elsewhere"_s));
    desktop.press(u"ctrl+a"_s);
    desktop.press(u"Delete"_s);

    const QRect area = program.popoverArea();
    QProcess* owner = nullptr;
    const auto pasteSelection = [&](const QString& name, const QString& text) {
        if (owner != nullptr) {  // its reader has had enough, and xclip answers nobody else before the end
            owner->kill();
            owner->waitForFinished();
        }
        owner = &desktop.start(
            u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"primary"_s, desktop.write(name, text)});
        ASSERT_TRUE(waitUntil([&] { return desktop.primary().size() == text.size(); }));
        desktop.movePointer({area.center().x(), area.bottom() - 585 + 130});
        desktop.xdotool(u"click 2"_s);
    };
    pasteSelection(u"long.txt"_s, QString(3'000'000, u'x'));
    EXPECT_TRUE(program.comes(u"Văn bản quá dài (hơn 200.000"_s)) << "or the toolkit has read it whole";
    pasteSelection(u"short.txt"_s, u"selected elsewhere"_s);
    EXPECT_TRUE(program.comes(u"18 ký tự"_s));
}

TEST_F(TranslatePanelOnScreen, a_file_dragged_across_its_edge_from_a_file_manager_is_translated) {
    desktop.write(u"files/note.md"_s, u"\nGood morning from a file\n"_s);
    const QString manager =
        desktop.startInFront(u"pcmanfm"_s, u"pcmanfm"_s, {u"--no-desktop"_s, desktop.home() + u"/files"_s});
    desktop.xdotool(u"windowmove --sync %1 10 40"_s.arg(manager));

    ASSERT_TRUE(program.openByHotKey());
    const QRect area = program.popoverArea();
    const QPoint input(area.center().x(), area.bottom() - 585 + 130);
    const auto edgeOfInput = [&] {
        return desktop.screenshot().pixelColor(area.center().x() - 265 + 15, input.y());
    };
    const QColor edgeAtRest = edgeOfInput();
    const auto pullToInput = [&](const QPoint& start) {
        desktop.movePointer(start);
        desktop.xdotool(u"mousedown 1"_s);
        constexpr int steps = 8;
        for (int step = 1; step <= steps; ++step)
            desktop.movePointer(start + (input - start) * step / steps);
    };
    EXPECT_TRUE(waitUntil([&] {
        EXPECT_TRUE(program.isPopoverShown() || program.openByHotKey());
        // The place of the first icon in the folder, once the file manager has drawn it.
        pullToInput({10 + 206, 40 + 99});
        const auto hovers = [&] {
            desktop.movePointer(input + QPoint(2, 2));
            desktop.movePointer(input);
            return edgeOfInput() != edgeAtRest;
        };
        const bool isTaken = waitUntil(hovers, 3);
        EXPECT_TRUE(program.isPopoverShown()) << "closed by the press that began the drag";
        desktop.xdotool(u"mouseup 1"_s);
        return isTaken;
    }));
    EXPECT_TRUE(program.isAsked(u"Good morning from a file"_s));
    EXPECT_TRUE(program.comesToFront());

    pullToInput({10 + 206, 40 + 300});  // which selects, and drags nothing
    EXPECT_FALSE(program.closes(1));
    desktop.xdotool(u"mouseup 1"_s);
    EXPECT_TRUE(program.closes());
}

/// A desktop with an input method for Vietnamese, in Telex.
struct InputMethod : testing::Test {
    InputMethod() {
        desktop.write(u".config/fcitx5/config"_s, u"[Behavior]\nActiveByDefault=True\n"_s);
        desktop.write(u".config/fcitx5/profile"_s,
            u"[Groups/0]\nName=Default\nDefault Layout=us\nDefaultIM=unikey\n"
            "[Groups/0/Items/0]\nName=unikey\n[GroupOrder]\n0=Default\n"_s);
        desktop.write(u".config/fcitx5/conf/unikey.conf"_s, u"InputMethod=Telex\n"_s);
        desktop.start(u"fcitx5"_s, {u"--disable=notificationitem"_s});
        desktop.setVariable(u"QT_IM_MODULE"_s, u"fcitx"_s);
        EXPECT_TRUE(waitUntil([this] { return desktop.run(u"fcitx5-remote"_s, {}) == u"0"; }));
        program.emplace(desktop);
        program->standIn().translatesTo(u"1"_s);
    }

    /// Waits for one more request, for `text`, and its translation. Returns whether both came.
    [[nodiscard]] bool translates(const QString& text) {
        ++translations;
        const bool done = program->isAsked(text) && program->standIn().requests().size() == translations &&
            waitUntil([&] { return program->shownTranslation() == QString::number(translations); });
        program->standIn().translatesTo(QString::number(translations + 1));
        return done;
    }

    VirtualDesktop desktop;
    std::optional<ProgramRun> program;
    qsizetype translations = 0;
};

TEST_F(InputMethod, what_a_composition_shows_is_translated_and_a_return_that_confirms_it_does_nothing_else) {
    desktop.pressTextHotKey();
    ASSERT_TRUE(waitUntil([&] {
        const bool isTelexOn = desktop.run(u"fcitx5-remote"_s, {u"-n"_s}) == u"unikey";
        return isTelexOn && program->isPopoverInFront();
    }));
    // This input method passes Return on after confirming the last word.
    desktop.enter(u"Xin chaof tieengs Vieetj"_s);
    EXPECT_TRUE(translates(u"Xin chào tiếng Việt"_s));

    desktop.press(u"ctrl+a"_s);
    desktop.press(u"super+grave"_s);  // a composition that keeps Return for itself
    desktop.enter(u"abc"_s);
    EXPECT_FALSE(waitUntil([&] { return program->standIn().requests().size() > translations; }, 1));
    desktop.press(u"Return"_s);
    EXPECT_TRUE(translates(u"abc"_s));

    desktop.press(u"ctrl+a"_s);
    desktop.type(u"tieesng"_s);
    EXPECT_TRUE(program->comes(u"5 ký tự"_s)) << "counted while it is composed";
    desktop.click(program->popoverArea().topLeft() + QPoint(263, 276));  // the translate button
    EXPECT_TRUE(translates(u"tiếng"_s)) << "the word was still being composed";
}

}  // namespace
}  // namespace tralio

#include "translate_panel_test.moc"
