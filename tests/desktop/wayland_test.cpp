#include <QTest>

#include <csignal>
#include <linux/input-event-codes.h>

#include "desktop/program_run.h"
#include "desktop/sway_desktop.h"
#include "support/process_limits.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// Created before main(), which makes a folder that only its creator can remove.
const OrdinaryProcess ordinaryProcess;

/// Both kinds of session: our windows on Xwayland, and native Wayland windows.
struct Wayland : testing::TestWithParam<SwayDesktop::Xwayland> {
    explicit Wayland(const SessionSettings& settings = {}) : desktop(GetParam(), settings) {}

    [[nodiscard]] bool isPopoverShown() const { return !desktop.windowArea(u"Tralio"_s).isEmpty(); }
    [[nodiscard]] bool popoverComes() const {
        return waitUntil([this] { return isPopoverShown(); });
    }
    [[nodiscard]] bool popoverGetsKeyboard() const {
        return waitUntil([this] { return isPopoverShown() && desktop.focusedWindow() == u"Tralio"; });
    }
    [[nodiscard]] bool popoverGoes(int seconds = 15) const {
        return waitUntil([this] { return !isPopoverShown(); }, seconds);
    }
    /// Presses Escape, which reaches the popover only some time after it is shown.
    [[nodiscard]] bool closePopover() const {
        return waitUntil([this] {
            desktop.press({KEY_ESC});
            return popoverGoes(1);
        });
    }

    /// Starts a text editor with everything selected.
    void startEditor(const QString& text) {
        desktop.start(u"mousepad"_s, {desktop.write(u"text.txt"_s, text)});
        ASSERT_TRUE(desktop.bringToFront(u"mousepad"_s));
    }
    /// Starts a terminal that shows a text and no cursor, and that accessibility does not reach.
    void startTerminal(const QString& text) {
        const QString path = desktop.write(u"terminal.txt"_s, text);
        desktop.start(u"foot"_s,
            {u"-f"_s, u"monospace:size=20"_s, u"sh"_s, u"-c"_s,
                u"stty -echo; printf '\\033[?25l'; cat %1; sleep 1000"_s.arg(path)});
        ASSERT_TRUE(desktop.bringToFront(u"foot"_s));
    }
    [[nodiscard]] QString primary() const { return desktop.run(u"wl-paste"_s, {u"-p"_s, u"-n"_s}); }

    SwayDesktop desktop;
    ProgramRun program{desktop};
};

const auto sessions = testing::Values(SwayDesktop::Xwayland::present, SwayDesktop::Xwayland::absent);

std::string sessionName(const testing::TestParamInfo<SwayDesktop::Xwayland>& session) {
    return session.param == SwayDesktop::Xwayland::present ? "with_xwayland" : "without_xwayland";
}

INSTANTIATE_TEST_SUITE_P(Sessions, Wayland, sessions, sessionName);

TEST_P(Wayland, what_is_selected_in_an_editor_is_translated_and_the_popover_shows_it) {
    startEditor(u"Ngôn ngữ trong trình soạn thảo"_s);
    ASSERT_TRUE(waitUntil([&] {
        desktop.press({KEY_LEFTCTRL, KEY_A});
        return primary() == u"Ngôn ngữ trong trình soạn thảo";
    }));
    EXPECT_EQ(program.translateSelection(), u"Ngôn ngữ trong trình soạn thảo");
    EXPECT_TRUE(popoverGetsKeyboard());
    EXPECT_TRUE(waitUntil([&] { return !program.shownTranslation().isEmpty(); }));
    EXPECT_EQ(desktop.isOnXwayland(u"Tralio"_s), GetParam() == SwayDesktop::Xwayland::present);
    // GL drivers would cost 30 MB.
    const QByteArray files = contentOf(u"/proc/%1/maps"_s.arg(program.processId()));
    EXPECT_TRUE(files.contains("/libQt6Widgets"));
    for (const char* driver : {"/libEGL_", "/libGLX_", "_dri.so", "/libgallium", "/libLLVM"})
        EXPECT_FALSE(files.contains(driver)) << driver;

    EXPECT_TRUE(closePopover());
}

TEST_P(Wayland, a_mark_in_a_terminal_counts_while_the_terminal_is_in_front_and_never_elsewhere) {
    startTerminal(u"Marked-in-the-terminal"_s);
    ASSERT_TRUE(waitUntil([&] {
        const QPoint corner = desktop.windowArea(desktop.focusedWindow()).topLeft();
        desktop.drag(corner + QPoint(20, 15), corner + QPoint(200, 15));
        return !primary().isEmpty();
    }));
    const QString marked = primary();
    const auto translate = [&] {
        const QString text = program.translateSelection();
        EXPECT_TRUE(popoverComes());
        EXPECT_TRUE(closePopover());
        // A second must pass, so that a further press is a request of its own.
        EXPECT_FALSE(waitUntil([&] { return isPopoverShown(); }, 1));
        return text;
    };
    EXPECT_EQ(translate(), marked);
    // The second time it is copied: no event tells of the click that cleared the selection.
    EXPECT_EQ(translate(), marked);
    desktop.click(desktop.windowArea(desktop.focusedWindow()).center());
    ASSERT_EQ(primary(), marked) << "it is no longer left over: what is tested?";
    EXPECT_EQ(translate(), QString());

    startEditor(u"Nothing is selected here"_s);
    ASSERT_EQ(primary(), marked);
    EXPECT_EQ(program.translateSelection(), QString());
    EXPECT_TRUE(popoverComes());
}

TEST_P(Wayland, what_only_a_copy_tells_is_copied_but_an_unknown_terminal_is_not_interrupted) {
    QProcess& application = desktop.start(QStringLiteral(SELECTION_PROBE), {u"copied by its shortcut"_s});
    ASSERT_TRUE(desktop.bringToFront(u"selection-probe"_s));
    EXPECT_EQ(program.translateSelection(), u"copied by its shortcut");
    ASSERT_TRUE(closePopover());
    application.kill();

    // The editor, where the shortcut would be harmless, was the last to report that it is in front, and it
    // hangs.
    QProcess& editor = desktop.start(u"mousepad"_s, {u"--disable-server"_s});
    ASSERT_TRUE(desktop.bringToFront(u"mousepad"_s));
    EXPECT_EQ(program.translateSelection(), QString());
    ASSERT_TRUE(closePopover());
    ::kill(static_cast<pid_t>(editor.processId()), SIGSTOP);

    const QString interrupted = desktop.home() + u"/interrupted"_s;
    desktop.start(u"foot"_s,
        {u"--app-id=scratchpad"_s, u"sh"_s, u"-c"_s,
            u"trap \"touch '%1'\" INT; while true; do sleep 1; done"_s.arg(interrupted)});
    ASSERT_TRUE(desktop.bringToFront(u"scratchpad"_s));
    EXPECT_EQ(program.translateSelection(), QString());
    EXPECT_FALSE(QFile::exists(interrupted));
    ASSERT_TRUE(closePopover());
    ASSERT_TRUE(desktop.bringToFront(u"scratchpad"_s));
    desktop.press({KEY_LEFTCTRL, KEY_C});
    EXPECT_TRUE(waitUntil([&] { return QFile::exists(interrupted); })) << "what is tested?";
}

TEST_P(Wayland, a_password_in_a_program_made_with_chromium_is_left_alone_whatever_its_name) {
    const QString page = desktop.write(u"a.html"_s, u"<input type=password value='hunter2' autofocus>"_s);
    desktop.startChromium({u"--ozone-platform=wayland"_s, u"--class=beekeeper"_s, u"file://"_s + page});
    ASSERT_TRUE(desktop.bringToFront(u"beekeeper"_s));
    ASSERT_TRUE(waitUntil([&] {
        desktop.press({KEY_LEFTCTRL, KEY_A});
        return primary() == u"hunter2";
    })) << "it keeps its passwords: what is tested?";
    EXPECT_EQ(program.translateSelection(), QString());
    EXPECT_TRUE(popoverComes());
}

TEST_P(Wayland, a_drawn_rectangle_becomes_a_translation_and_a_cancel_nothing) {
    startTerminal(u"Good morning everybody"_s);
    const auto capture = [&](const std::function<void()>& act) {
        desktop.pressCaptureHotKey();
        ASSERT_TRUE(waitUntil([&] { return desktop.isRunning(u"slurp"_s); }));
        // The picker runs for a while before it has keyboard and pointer.
        ASSERT_TRUE(waitUntil([&] {
            act();
            return !desktop.isRunning(u"slurp"_s);
        }));
    };
    capture([&] { desktop.press({KEY_ESC}); });
    ASSERT_TRUE(popoverComes());
    EXPECT_TRUE(program.standIn().requests().isEmpty());
    ASSERT_TRUE(closePopover());

    // If the picker sees only the end of a drag, the rectangle is another one, without text.
    const auto drawsTheText = [&] {
        EXPECT_TRUE(desktop.bringToFront(u"foot"_s));
        const QPoint corner = desktop.windowArea(desktop.focusedWindow()).topLeft();
        capture([&] { desktop.drag(corner + QPoint(1, 1), corner + QPoint(600, 60)); });
        const bool arrived = waitUntil([&] { return program.standIn().requests().size() == 1; }, 10);
        if (!arrived)
            desktop.press({KEY_ESC});
        return arrived;
    };
    ASSERT_TRUE(drawsTheText() || drawsTheText() || drawsTheText());
    EXPECT_EQ(program.standIn().requests().last().userText(), u"Good morning everybody");
    EXPECT_TRUE(popoverComes());

    // The picker ends with the program that waits for it.
    desktop.pressCaptureHotKey();
    ASSERT_TRUE(waitUntil([&] { return desktop.isRunning(u"slurp"_s); }));
    ASSERT_EQ(kill(static_cast<pid_t>(program.processId()), SIGKILL), 0);
    EXPECT_TRUE(waitUntil([&] { return !desktop.isRunning(u"slurp"_s); }));
}

TEST_P(Wayland, a_click_on_another_window_closes_the_popover) {
    desktop.movePointer({1270, 1000});
    startTerminal(u"elsewhere"_s);
    desktop.pressTextHotKey();
    ASSERT_TRUE(popoverGetsKeyboard());
    program.callOnBus(u"Open"_s);  // while it is open
    EXPECT_TRUE(waitUntil([&] {
        desktop.click({1270, 1000});
        return !isPopoverShown();
    }));
}

/// sway's default configuration: the focus follows the pointer.
struct ShippedSway : Wayland {
    ShippedSway() : Wayland({.asShipped = true}) {}

    /// Moves the pointer gradually, as a hand does.
    void glide(const QPoint& from, const QPoint& to) {
        constexpr int steps = 30;
        for (int step = 1; step <= steps; ++step) {
            desktop.movePointer(from + (to - from) * step / steps);
            QTest::qWait(5);
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Sway, ShippedSway, sessions, sessionName);

TEST_P(ShippedSway, leaves_the_popover_open_when_the_pointer_leaves_it_and_gives_it_the_keyboard_again) {
    desktop.start(u"foot"_s, {u"-o"_s, u"initial-window-size-pixels=400x300"_s, u"sleep"_s, u"1000"_s});
    ASSERT_TRUE(desktop.bringToFront(u"foot"_s));
    desktop.movePointer({20, 1000});
    desktop.pressTextHotKey();
    ASSERT_TRUE(popoverGetsKeyboard());
    const QPoint inside = desktop.windowArea(u"Tralio"_s).center();
    for (int round = 0; round < 2; ++round) {
        desktop.movePointer(inside);
        ASSERT_TRUE(waitUntil([&] { return desktop.focusedWindow() == u"Tralio"; }));
        EXPECT_FALSE(popoverGoes(1));
        glide(inside, {20, 1000});
        ASSERT_TRUE(waitUntil([&] { return desktop.focusedWindow() != u"Tralio"; })) << "it does not follow";
        EXPECT_FALSE(popoverGoes(1)) << "closed by a motion";
    }
    desktop.movePointer(inside);
    ASSERT_TRUE(waitUntil([&] { return desktop.focusedWindow() == u"Tralio"; }));
    EXPECT_TRUE(closePopover());
}

using ShippedSwayScreens = testing::TestWithParam<const char*>;
INSTANTIATE_TEST_SUITE_P(Scales, ShippedSwayScreens, testing::Values("2", "1.5"));

TEST_P(ShippedSwayScreens, have_the_whole_popover_each_whatever_their_scale) {
    SwayDesktop desktop(SwayDesktop::Xwayland::present, {.asShipped = true, .outputs = 2});
    desktop.run(u"swaymsg"_s, {u"output * scale "_s + QLatin1String(GetParam())});
    const ProgramRun program(desktop);
    for (const char* output : {"HEADLESS-1", "HEADLESS-2"}) {
        desktop.run(u"swaymsg"_s, {u"focus output "_s + QLatin1String(output)});
        desktop.pressTextHotKey();
        ASSERT_TRUE(waitUntil([&] { return desktop.focusedWindow() == u"Tralio"; })) << output;
        EXPECT_FALSE(desktop.isOnXwayland(u"Tralio"_s)) << "which would blur it";
        const QRect area = desktop.windowArea(u"Tralio"_s);
        const QRect screen = desktop.outputArea(QLatin1String(output));
        EXPECT_TRUE(screen.contains(area))
            << output << ": its shadow, too, which compositors keep on the screen";
        EXPECT_EQ(area.height(), std::min(585 + 80, screen.height() - 12)) << output;
        ASSERT_TRUE(waitUntil([&] {
            desktop.press({KEY_ESC});
            return waitUntil([&] { return desktop.windowArea(u"Tralio"_s).isEmpty(); }, 1);
        }));
    }
}

}  // namespace
}  // namespace tralio
