#include <QFile>

#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "hotkeys/hot_key_platform.h"
#include "platform/linux/x11/x11_hot_keys.h"
#include "state/sqlite_key_value_store.h"
#include "support/files.h"
#include "support/testing.h"

namespace tralio {
namespace {

class HotKey : public testing::Test {
protected:
    HotKey() {
        // A key that is held repeats soon and often.
        desktop.run(u"xset"_s, {u"r"_s, u"rate"_s, u"150"_s, u"50"_s});
    }

    /// The program, with another hot key for the selected text.
    ProgramRun& start(const KeyCombination& text = {KeyCode::d, Modifier::command | Modifier::shift}) {
        {
            SqliteKeyValueStore store(desktop.home() + u"/.local/share/tralio/tralio.sqlite"_s);
            store.setValue(u"app_setting_hotkey_keycode"_s, qint64(text.key));
            store.setValue(u"app_setting_hotkey_modifiers"_s, qint64(text.modifiers.toInt()));
            store.setValue(u"app_setting_hotkey_display"_s, readableShortcut(text));
        }
        return program.emplace(desktop);
    }

    VirtualDesktop desktop;
    std::optional<ProgramRun> program;
};

TEST_F(HotKey, that_is_held_types_nothing_into_the_application_though_another_program_has_its_key) {
    // Super+D is the window manager's.
    start();
    const QString typed = desktop.home() + u"/typed"_s;
    desktop.start(u"xterm"_s, {u"-e"_s, u"sh"_s, u"-c"_s, u"stty -icanon -echo; cat > "_s + typed});
    ASSERT_FALSE(desktop.bringToFront(u"xterm"_s).isEmpty());
    desktop.type(u"x"_s);
    ASSERT_TRUE(waitUntil([&] { return contentOf(typed) == "x"; }));

    desktop.hold({u"super"_s, u"shift"_s, u"d"_s});
    ASSERT_TRUE(waitUntil([&] { return program->isPopoverInFront(); }));
    EXPECT_FALSE(waitUntil([&] { return contentOf(typed) != "x"; }, 1));
    desktop.release({u"d"_s, u"shift"_s, u"super"_s});

    program->standIn().translatesTo(u"xong"_s);
    desktop.type(u"hello d"_s);
    desktop.press(u"Return"_s);
    ASSERT_TRUE(waitUntil([&] { return !program->standIn().requests().isEmpty(); }));
    EXPECT_EQ(program->standIn().requests().last().userText(), u"hello d"_s);
    EXPECT_EQ(contentOf(typed), "x");
}

TEST_F(HotKey, on_the_key_that_copies_lets_the_copy_pass_while_it_is_held_and_types_nothing) {
    start({KeyCode::c, Modifier::option});
    QProcessEnvironment mute = desktop.environment();
    mute.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent"_s);
    desktop.startIn(mute, QStringLiteral(SELECTION_PROBE), {u"marked text"_s});
    const QString probe = desktop.bringToFront(u"selection-probe"_s);
    ASSERT_FALSE(probe.isEmpty());

    desktop.hold({u"alt"_s, u"c"_s});
    EXPECT_TRUE(waitUntil([&] { return !program->standIn().requests().isEmpty(); }));
    desktop.release({u"c"_s, u"alt"_s});
    ASSERT_FALSE(program->standIn().requests().isEmpty());
    EXPECT_EQ(program->standIn().requests().last().userText(), u"marked text"_s);

    ASSERT_TRUE(program->closePopover());
    desktop.setClipboard(u"something else"_s);
    ASSERT_FALSE(desktop.bringToFront(u"selection-probe"_s).isEmpty());
    desktop.press(u"ctrl+c"_s);
    EXPECT_TRUE(waitUntil([&] { return desktop.clipboard() == u"marked text"; })) << "typed over";
}

TEST_F(HotKey, that_another_program_has_says_so_in_the_footer_and_in_the_settings) {
    qputenv("DISPLAY", desktop.environment().value(u"DISPLAY"_s).toUtf8());
    const auto other = X11Connection::open();
    X11RawInput rawInput(*other);
    X11HotKeys others(*other, rawInput);
    ASSERT_EQ(others.registerHotKey({KeyCode::d, Modifier::command | Modifier::shift}, textHotKeyID).status,
        HotKeyStatus::registered);
    other->sync();

    start();
    ASSERT_TRUE(program->clickTrayIcon());
    ASSERT_TRUE(waitUntil([&] { return program->isPopoverInFront(); }));
    EXPECT_TRUE(program->click(u"Bôi đen: "_s)) << "what is out of order can be clicked";
    EXPECT_TRUE(waitUntil([&] { return program->shows(u"Phím tắt này đang được ứng dụng khác sử dụng"_s); }));

    // Another one works, and the words go.
    EXPECT_TRUE(program->click(u"Ctrl + Alt + D"_s));
    EXPECT_TRUE(waitUntil([&] { return !program->shows(u"Phím tắt này đang được"_s); }));
}

TEST_F(HotKey, recording_ends_with_its_key_and_what_that_key_repeats_reaches_nobody) {
    start();
    ASSERT_TRUE(program->clickTrayIcon());
    ASSERT_TRUE(waitUntil([&] { return program->isPopoverInFront(); }));
    ASSERT_TRUE(program->click(u"Cài đặt"_s));
    ASSERT_TRUE(program->click(u"Tralio văn bản bôi đen: Đổi"_s));
    ASSERT_TRUE(waitUntil([&] { return program->shows(u"Hãy bấm tổ hợp phím mới"_s); }));
    desktop.hold({u"Escape"_s});
    ASSERT_TRUE(waitUntil([&] { return !program->shows(u"Hãy bấm tổ hợp phím mới"_s); }));
    EXPECT_FALSE(waitUntil([&] { return !program->isPopoverShown(); }, 1)) << "closed by a repeat";
    desktop.release({u"Escape"_s});
    desktop.press(u"Escape"_s);
    EXPECT_TRUE(waitUntil([&] { return !program->isPopoverShown(); })) << "a new press is one";
}

}  // namespace
}  // namespace tralio
