#include <array>

#include "desktop/program_run.h"
#include "desktop/session_settings.h"
#include "desktop/virtual_desktop.h"
#include "platform/linux/x11/x11_connection.h"
#include "support/testing.h"

namespace tralio {
namespace {

TEST(PopoverWindow, opens_without_a_tray_takes_the_keyboard_and_closes_on_escape_and_outside_clicks) {
    VirtualDesktop desktop(VirtualDesktop::Tray::absent);
    ProgramRun program(desktop);
    program.standIn().translatesTo(u"xong"_s);

    ASSERT_TRUE(program.openByHotKey());  // nothing is in front: nothing to translate, but the popover comes
    desktop.type(u"hello"_s);
    desktop.press(u"Return"_s);
    ASSERT_TRUE(waitUntil([&] { return program.shownTranslation() == u"xong"_s; }));
    EXPECT_EQ(program.standIn().requests().last().userText(), u"hello"_s);

    EXPECT_TRUE(program.closePopover());

    desktop.start(u"xterm"_s, {u"-e"_s, u"sleep"_s, u"1000"_s});
    const QString terminal = desktop.bringToFront(u"xterm"_s);
    ASSERT_FALSE(terminal.isEmpty());
    ASSERT_TRUE(program.openByHotKey());
    program.callOnBus(u"Open"_s);  // while it is open
    desktop.click(terminal, {20, 20}, 1);
    EXPECT_TRUE(waitUntil([&] { return !program.isPopoverShown(); }));

    // Otherwise the window manager might still name the popover that has just been closed.
    ASSERT_FALSE(desktop.bringToFront(u"xterm"_s).isEmpty());
    program.callOnBus(u"Open"_s);
    ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); }));
    program.callOnBus(u"Open"_s);
    desktop.run(u"xdotool"_s, {u"windowactivate"_s, terminal});
    EXPECT_TRUE(waitUntil([&] { return !program.isPopoverShown(); })) << "left by the keyboard";
    EXPECT_TRUE(program.isRunning());
}

TEST(PopoverWindow, stays_while_another_program_takes_the_keyboard_for_a_moment) {
    VirtualDesktop desktop;
    ProgramRun program(desktop);
    ASSERT_TRUE(program.openByHotKey());

    qputenv("DISPLAY", desktop.environment().value(u"DISPLAY"_s).toUtf8());
    const auto other = X11Connection::open();
    const XcbPtr<xcb_grab_keyboard_reply_t> grab{xcb_grab_keyboard_reply(other->xcb(),
        xcb_grab_keyboard(
            other->xcb(), 1, other->root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
        nullptr)};
    ASSERT_TRUE(grab);
    EXPECT_FALSE(waitUntil([&] { return !program.isPopoverShown(); }, 1)) << "closed by the grab alone";
    xcb_ungrab_keyboard(other->xcb(), XCB_CURRENT_TIME);
    other->sync();

    desktop.start(u"xterm"_s, {u"-e"_s, u"sleep"_s, u"1000"_s});
    ASSERT_FALSE(desktop.bringToFront(u"xterm"_s).isEmpty());
    EXPECT_TRUE(waitUntil([&] { return !program.isPopoverShown(); }));
}

/// Moves the pointer as a mouse does, and not in one jump, which no device makes.
void movePointer(const VirtualDesktop& desktop, const QPoint& by) {
    constexpr int steps = 10;
    for (int step = 0; step < steps; ++step)
        desktop.run(u"xdotool"_s,
            {u"mousemove_relative"_s, u"--"_s, QString::number(by.x() / steps),
                QString::number(by.y() / steps)});
}

TEST(PopoverWindow, stays_when_the_focus_follows_the_pointer_elsewhere_and_closes_at_a_click) {
    VirtualDesktop desktop;
    desktop.write(u"rc.xml"_s, SessionSettings{.focus = SessionSettings::Focus::followsPointer}.forOpenbox());
    desktop.replaceWindowManager(
        u"openbox"_s, {u"--sm-disable"_s, u"--config-file"_s, desktop.home() + u"/rc.xml"_s});
    ProgramRun program(desktop);
    desktop.start(u"xterm"_s, {u"-geometry"_s, u"60x20+0+0"_s});
    const QString terminal = desktop.bringToFront(u"xterm"_s);
    ASSERT_FALSE(terminal.isEmpty());
    desktop.run(u"xdotool"_s, {u"mousemove"_s, u"100"_s, u"100"_s});
    for (const auto& [place, where] :
        {std::pair(QPoint(100, 100), "a window"), std::pair(QPoint(100, 800), "the root")}) {
        ASSERT_TRUE(program.openByHotKey());
        const QPoint way = program.popoverArea().center() - QPoint(100, 100);
        movePointer(desktop, way);
        movePointer(desktop, -way);
        EXPECT_TRUE(waitUntil([&] { return desktop.run(u"xdotool"_s, {u"getactivewindow"_s}) == terminal; }))
            << "the focus does not follow";
        EXPECT_FALSE(waitUntil([&] { return !program.isPopoverShown(); }, 1)) << "closed by a motion";
        desktop.run(u"xdotool"_s,
            {u"mousemove"_s, QString::number(place.x()), QString::number(place.y()), u"click"_s, u"1"_s});
        EXPECT_TRUE(waitUntil([&] { return !program.isPopoverShown(); })) << where;
        desktop.run(u"xdotool"_s, {u"mousemove"_s, u"100"_s, u"100"_s});
        EXPECT_TRUE(waitUntil([&] { return desktop.run(u"xdotool"_s, {u"getactivewindow"_s}) == terminal; }));
    }
}

/// A window of another program that asks the window manager for nothing, or for all but the keyboard.
class AidWindow final {
public:
    enum class Kind { unmanaged, withoutKeyboard };

    AidWindow(Kind kind, const QRect& area) {
        const quint32 unmanaged = kind == Kind::unmanaged ? 1 : 0;
        xcb_create_window(m_connection->xcb(), XCB_COPY_FROM_PARENT, m_window, m_connection->root(),
            static_cast<qint16>(area.x()), static_cast<qint16>(area.y()), static_cast<quint16>(area.width()),
            static_cast<quint16>(area.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
            XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
        const std::array<quint32, 9> hints{1, 0};
        xcb_change_property(m_connection->xcb(), XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_HINTS,
            XCB_ATOM_WM_HINTS, 32, hints.size(), hints.data());
        xcb_change_property(m_connection->xcb(), XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_NAME,
            XCB_ATOM_STRING, 8, 3, "Aid");
        xcb_map_window(m_connection->xcb(), m_window);
        m_connection->sync();
    }

private:
    std::unique_ptr<X11Connection> m_connection = X11Connection::open();
    xcb_window_t m_window = xcb_generate_id(m_connection->xcb());
};

TEST(PopoverWindow, stays_at_a_click_on_what_helps_with_typing) {
    VirtualDesktop desktop;
    qputenv("DISPLAY", desktop.environment().value(u"DISPLAY"_s).toUtf8());
    ProgramRun program(desktop);
    const auto click = [&](const QString& window) {
        desktop.click(window, {50, 20}, 1);
        return waitUntil([&] { return !program.isPopoverShown(); }, 1);
    };
    for (const auto kind : {AidWindow::Kind::unmanaged, AidWindow::Kind::withoutKeyboard}) {
        ASSERT_TRUE(program.openByHotKey());
        const AidWindow aid(kind, {20, 700, 200, 40});
        QString window;
        ASSERT_TRUE(waitUntil([&] {
            window = desktop.run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Aid$"_s});
            return !window.isEmpty();
        }));
        EXPECT_FALSE(click(window)) << (kind == AidWindow::Kind::unmanaged ? "unmanaged" : "managed");
        desktop.run(u"xdotool"_s, {u"mousemove"_s, u"600"_s, u"900"_s, u"click"_s, u"1"_s});
        EXPECT_TRUE(waitUntil([&] { return !program.isPopoverShown(); }))
            << "where it stands counts, not that it is";
    }
}

TEST(PopoverWindow, closes_at_clicks_on_a_panel_and_on_the_bare_screen_that_take_no_focus) {
    VirtualDesktop desktop(VirtualDesktop::Tray::absent);
    desktop.replaceWindowManager(u"xfwm4"_s, {u"--replace"_s, u"--sm-client-disable"_s});
    desktop.startPanel();
    ASSERT_TRUE(waitUntil([&] { return desktop.isVisible(u"xfce4-panel"_s); }));
    ProgramRun program(desktop);
    const QStringList panel =
        desktop.run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--class"_s, u"xfce4-panel"_s})
            .split(u'\n');
    for (const QString& window : {panel.constFirst(), QString()}) {
        program.callOnBus(u"Open"_s);
        ASSERT_TRUE(waitUntil([&] { return program.isPopoverInFront(); }));
        EXPECT_FALSE(waitUntil([&] { return !program.isPopoverShown(); }, 1));
        if (window.isEmpty())
            desktop.run(u"xdotool"_s, {u"mousemove"_s, u"200"_s, u"700"_s, u"click"_s, u"1"_s});
        else
            desktop.click(window, {3, 3}, 1);
        EXPECT_TRUE(waitUntil([&] { return !program.isPopoverShown(); }))
            << (window.isEmpty() ? "the bare screen" : "the panel");
        // A menu may have come up.
        desktop.press(u"Escape"_s);
    }
}

}  // namespace
}  // namespace tralio
