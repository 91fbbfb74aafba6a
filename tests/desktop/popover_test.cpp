#include <array>

#include "desktop/fixtures.h"

namespace tralio {
namespace {

using PopoverWindow = X11;

TEST_F(PopoverWindow, opens_without_a_tray_takes_the_keyboard_and_closes_on_escape_and_outside_clicks) {
    ProgramRun program(desktop);

    // No application is in front: nothing to translate, but the popover opens.
    ASSERT_TRUE(program.openByHotKey());
    desktop.enter(u"hello"_s);
    ASSERT_TRUE(waitUntil([&] { return program.shownTranslation() == u"Xin chào"_s; }));
    EXPECT_EQ(program.standIn().requests().last().userText(), u"hello"_s);
    EXPECT_TRUE(program.closePopover());

    const QString terminal = desktop.startTerminal(u"sleep 1000"_s);
    ASSERT_TRUE(program.openByHotKey());
    program.callOnBus(u"Open"_s);  // while it is open
    const auto other = X11Connection::open();
    ASSERT_TRUE(takesKeyboard(*other));
    EXPECT_FALSE(program.closes(1)) << "by another program's grab of the keyboard alone";
    xcb_ungrab_keyboard(other->xcb(), XCB_CURRENT_TIME);
    other->sync();
    desktop.click(terminal, {20, 20});
    EXPECT_TRUE(program.closes());

    // Without it the window manager may still name the popover that was just closed.
    ASSERT_FALSE(desktop.bringToFront(u"xterm"_s).isEmpty());
    program.callOnBus(u"Open"_s);
    ASSERT_TRUE(program.comesToFront());
    program.callOnBus(u"Open"_s);
    desktop.xdotool(u"windowactivate "_s + terminal);
    EXPECT_TRUE(program.closes()) << "left by the keyboard";

    ASSERT_TRUE(program.openByHotKey());
    desktop.xdotool(u"mousemove_relative 3 3 key alt+Tab"_s);
    EXPECT_TRUE(program.closes()) << "left by keys right after a motion";
    EXPECT_TRUE(program.isRunning());
}

TEST_F(PopoverWindow, stays_when_the_focus_follows_the_pointer_elsewhere_and_closes_at_a_click) {
    desktop.write(u"rc.xml"_s,
        uR"(<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
<focus><followMouse>yes</followMouse><focusDelay>200</focusDelay></focus>
</openbox_config>
)"_s);
    desktop.replaceWindowManager(
        u"openbox"_s, {u"--sm-disable"_s, u"--config-file"_s, desktop.home() + u"/rc.xml"_s});
    ProgramRun program(desktop);
    const QString terminal = desktop.startTerminal(u"sleep 1000"_s);
    const QPoint onTerminal(100, 100);
    const auto terminalGetsKeyboard = [&] {
        return waitUntil([&] { return desktop.windowWithKeyboard() == terminal; });
    };
    // In small steps, as real mice move.
    const auto glide = [this](const QPoint& way) {
        for (int step = 0; step < 10; ++step)
            desktop.xdotool(u"mousemove_relative -- %1 %2"_s.arg(way.x() / 10).arg(way.y() / 10));
    };
    for (const QPoint& place : {onTerminal, QPoint(100, 800)}) {
        desktop.movePointer(onTerminal);
        ASSERT_TRUE(terminalGetsKeyboard());
        ASSERT_TRUE(program.openByHotKey());
        const QPoint way = program.popoverArea().center() - onTerminal;
        glide(way);
        glide(-way);
        EXPECT_TRUE(terminalGetsKeyboard()) << "the focus does not follow";
        EXPECT_FALSE(program.closes(1)) << "by a motion";
        desktop.click(place);
        EXPECT_TRUE(program.closes()) << (place == onTerminal ? "a window" : "the root");
    }

    // Left open on one desktop, it comes to the user on another.
    desktop.movePointer(onTerminal);
    ASSERT_TRUE(program.openByHotKey());
    glide(program.popoverArea().center() - onTerminal);
    glide(onTerminal - program.popoverArea().center());
    EXPECT_TRUE(terminalGetsKeyboard());
    desktop.xdotool(u"set_desktop 1"_s);
    ASSERT_TRUE(waitUntil([&] { return !program.isPopoverShown(); }));
    program.callOnBus(u"Open"_s);
    EXPECT_TRUE(program.comesToFront());
    EXPECT_EQ(desktop.xdotool(u"get_desktop"_s), u"1"_s);
}

/// A window of another program, bypassing the window manager, or managed but without the focus.
struct AidWindow {
    AidWindow(bool isManaged, const QRect& area) {
        const std::array<quint32, 2> values{isManaged ? 0U : 1U, XCB_EVENT_MASK_BUTTON_PRESS};
        xcb_create_window(connection->xcb(), XCB_COPY_FROM_PARENT, window, connection->root(),
            static_cast<qint16>(area.x()), static_cast<qint16>(area.y()), static_cast<quint16>(area.width()),
            static_cast<quint16>(area.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
            XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
        const std::array<quint32, 9> hints{1, 0};
        xcb_change_property(connection->xcb(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_HINTS,
            XCB_ATOM_WM_HINTS, 32, hints.size(), hints.data());
        xcb_map_window(connection->xcb(), window);
        connection->sync();
    }

    /// How often the mouse was pressed on it since the last look.
    [[nodiscard]] int presses() const {
        connection->sync();
        int found = 0;
        while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(connection->xcb())})
            found += (event->response_type & 0x7f) == XCB_BUTTON_PRESS ? 1 : 0;
        return found;
    }

    std::unique_ptr<X11Connection> connection = X11Connection::open();
    xcb_window_t window = xcb_generate_id(connection->xcb());
};

TEST_F(PopoverWindow, stays_at_a_click_on_what_helps_with_typing) {
    ProgramRun program(desktop);
    for (const bool isManaged : {false, true}) {
        ASSERT_TRUE(program.openByHotKey());
        const AidWindow aid(isManaged, {20, 700, 200, 40});
        const QString window = QString::number(aid.window);
        ASSERT_TRUE(waitUntil([&] {
            return desktop.run(u"xwininfo"_s, {u"-id"_s, window}).contains(u"IsViewable");
        }));
        desktop.click(window, {50, 20});
        EXPECT_FALSE(program.closes(1)) << isManaged;
        desktop.click({600, 900});
        EXPECT_TRUE(program.closes()) << "where it stands counts, not that it is";
    }
    // As window managers guard the bare screen, and shells draw their panels.
    ASSERT_TRUE(program.openByHotKey());
    const AidWindow guard(false, {0, 0, 1280, 1024});
    const quint32 below = XCB_STACK_MODE_BELOW;
    xcb_configure_window(guard.connection->xcb(), guard.window, XCB_CONFIG_WINDOW_STACK_MODE, &below);
    guard.connection->sync();
    desktop.click({600, 900});
    EXPECT_TRUE(program.closes()) << "what lies across the whole screen helps nobody with typing";
    EXPECT_EQ(guard.presses(), 1);

    ASSERT_TRUE(program.openByHotKey());
    ASSERT_TRUE(program.click(u"Chụp & Tralio"_s, 2));
    EXPECT_TRUE(waitUntil([&] { return desktop.isVisible(u"tralio-snip"_s); }));
    EXPECT_EQ(guard.presses(), 0) << "the second press of a double click was not meant for what lay beneath";
    ASSERT_TRUE(waitUntil([&] {
        desktop.press(u"Escape"_s);
        return !desktop.isVisible(u"tralio-snip"_s);
    }));
    EXPECT_TRUE(program.closePopover());
    desktop.click({600, 900});
    EXPECT_EQ(guard.presses(), 1);
}

TEST_F(PopoverWindow, closes_at_clicks_on_a_panel_and_on_the_bare_screen_that_take_no_focus) {
    desktop.replaceWindowManager(u"xfwm4"_s, {u"--replace"_s, u"--sm-client-disable"_s});
    desktop.startPanel();
    ASSERT_TRUE(waitUntil([&] { return desktop.isVisible(u"xfce4-panel"_s); }));
    ProgramRun program(desktop);
    for (const QPoint& place : {QPoint(3, 3), QPoint(200, 700)}) {
        program.callOnBus(u"Open"_s);
        ASSERT_TRUE(program.comesToFront());
        EXPECT_FALSE(program.closes(1));
        desktop.click(place);
        EXPECT_TRUE(program.closes()) << (place.y() < 32 ? "the panel" : "the bare screen");
        // A context menu may be open.
        desktop.press(u"Escape"_s);
    }
}

/// New windows stay behind the one in use.
const auto preventsStealing =
    uR"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfwm4" version="1.0">
  <property name="general" type="empty">
    <property name="prevent_focus_stealing" type="bool" value="true"/>
    <property name="focus_new" type="bool" value="false"/>
  </property>
</channel>
)"_s;

TEST(WindowManager, that_prevents_the_stealing_of_the_focus_gives_it_to_the_popover_whatever_opens_it) {
    VirtualDesktop desktop;
    desktop.write(u".config/xfce4/xfconf/xfce-perchannel-xml/xfwm4.xml"_s, preventsStealing);
    desktop.replaceWindowManager(u"xfwm4"_s, {u"--replace"_s, u"--sm-client-disable"_s});
    ProgramRun program(desktop);
    const QString terminal = desktop.startTerminal(u"cat"_s);

    const std::pair<const char*, std::function<void()>> ways[] = {
        // First: a click on the icon soon after one elsewhere would refer to the popover that the latter
        // closed.
        {"tray", [&] { EXPECT_TRUE(program.clickTrayIcon()); }},
        {"hot key", [&] { desktop.press(u"super+shift+d"_s); }},
        {"session bus", [&] { program.callOnBus(u"Open"_s); }}};
    for (const auto& [name, open] : ways) {
        SCOPED_TRACE(name);
        desktop.click(terminal, {20, 20});
        desktop.type(u"typing "_s);
        open();
        ASSERT_TRUE(program.comesToFront());
        const QString typed = u"typed after "_s + QLatin1String(name);
        desktop.press(u"ctrl+a"_s);
        desktop.enter(typed);
        EXPECT_TRUE(program.isAsked(typed));
        desktop.click(terminal, {20, 20});
        ASSERT_TRUE(program.closes());
    }
}

TEST(WindowManager, with_a_compositor_knows_the_shadow_and_may_fade_a_popover_that_opens_again_at_once) {
    VirtualDesktop desktop;
    desktop.startCompositor();
    ProgramRun program(desktop);
    for (const QString& typed : {u"one"_s, u"two"_s, u"three"_s}) {
        // Open again while the former popover still fades out.
        ASSERT_TRUE(program.openByHotKey());
        desktop.press(u"Escape"_s);
        program.callOnBus(u"Open"_s);
        ASSERT_TRUE(program.comesToFront());
        EXPECT_TRUE(desktop.run(u"xprop"_s, {u"-id"_s, desktop.windowWithKeyboard(), u"_GTK_FRAME_EXTENTS"_s})
                        .endsWith(u"= 40, 40, 28, 52"));
        desktop.press(u"ctrl+a"_s);
        desktop.enter(typed);
        ASSERT_TRUE(program.isAsked(typed));
        ASSERT_TRUE(program.closePopover());
    }
    EXPECT_EQ(program.standIn().requests().size(), 3);
}

TEST(LowScreen, has_the_whole_popover_with_its_footer_also_once_the_screen_beneath_it_has_gone_or_shrunk) {
    VirtualDesktop desktop(VirtualDesktop::Tray::present, {1280, 576});
    ProgramRun program(desktop);
    program.standIn().refuseConnections();
    ASSERT_TRUE(program.openByHotKey());
    EXPECT_TRUE(desktop.screenshot().rect().contains(program.popoverArea()));
    EXPECT_TRUE(program.click(u"Cài đặt"_s));
    EXPECT_TRUE(program.click(u"System Prompt: Mặc định"_s));
    EXPECT_TRUE(program.click(u"Bôi đen: "_s)) << "in the footer";

    for (const int width : {640, 560}) {
        desktop.run(u"xrandr"_s,
            {u"--setmonitor"_s, u"of %1"_s.arg(width), u"%1/300x576/200+0+0"_s.arg(width), u"screen"_s});
        EXPECT_TRUE(waitUntil([&] {
            program.callOnBus(u"Open"_s);
            return QRect(0, 0, width, 576).contains(program.popoverArea());
        })) << width;
    }
}

}  // namespace
}  // namespace tralio
