#include "desktop/fixtures.h"
#include "hotkeys/hot_key_platform.h"
#include "platform/linux/x11/x11_hot_keys.h"

namespace tralio {
namespace {

struct HotKey : X11 {
    HotKey() { desktop.repeatsFast(); }

    /// Starts the program, with another hot key for the selected text.
    void start(const KeyCombination& text = {KeyCode::d, Modifier::command | Modifier::shift}) {
        program.emplace(desktop,
            ProgramRun::Stored{{u"app_setting_hotkey_keycode"_s, qint64(text.key)},
                {u"app_setting_hotkey_modifiers"_s, qint64(text.modifiers.toInt())},
                {u"app_setting_hotkey_display"_s, readableShortcut(text)}});
    }

    std::optional<ProgramRun> program;
};

TEST_F(HotKey, that_is_held_types_nothing_into_the_application_though_another_program_has_its_key) {
    // Super+D belongs to the window manager.
    start();
    const QString typed = desktop.home() + u"/typed"_s;
    desktop.startTerminal(u"stty -icanon -echo; cat > "_s + typed);
    desktop.hold({u"x"_s});
    ASSERT_TRUE(waitUntil([&] { return contentOf(typed).startsWith("xxxx"); })) << "held keys do not repeat";
    desktop.release({u"x"_s});
    desktop.type(u"."_s);
    ASSERT_TRUE(waitUntil([&] { return contentOf(typed).endsWith('.'); }));
    const QByteArray before = contentOf(typed);

    desktop.hold({u"super"_s, u"shift"_s, u"d"_s});
    ASSERT_TRUE(program->comesToFront());
    EXPECT_FALSE(waitUntil([&] { return contentOf(typed) != before; }, 1));
    desktop.release({u"d"_s, u"shift"_s, u"super"_s});

    desktop.enter(u"hello d"_s);
    EXPECT_TRUE(program->isAsked(u"hello d"_s));
    EXPECT_EQ(contentOf(typed), before);
}

TEST_F(HotKey, on_the_key_that_copies_lets_the_copy_pass_while_it_is_held_and_types_nothing) {
    start({KeyCode::c, Modifier::option});
    desktop.startSilentProbe(u"marked text"_s);

    desktop.hold({u"alt"_s, u"c"_s});
    EXPECT_TRUE(program->isAsked(u"marked text"_s));
    desktop.release({u"c"_s, u"alt"_s});

    ASSERT_TRUE(program->closePopover());
    desktop.setClipboard(u"something else"_s);
    ASSERT_FALSE(desktop.bringToFront(u"selection-probe"_s).isEmpty());
    desktop.press(u"ctrl+c"_s);
    EXPECT_TRUE(waitUntil([&] { return desktop.clipboard() == u"marked text"; })) << "typed over";
}

TEST_F(HotKey, that_another_program_has_says_so_and_one_that_is_proposed_or_recorded_takes_its_place) {
    const auto other = X11Connection::open();
    X11RawInput rawInput(*other);
    X11HotKeys others(*other, rawInput);
    const auto othersGet = [&](const KeyCombination& combination) {
        const HotKeyStatus status = others.registerHotKey(combination, textHotKeyID).status;
        other->sync();
        return status == HotKeyStatus::registered;
    };
    ASSERT_TRUE(othersGet({KeyCode::d, Modifier::command | Modifier::shift}));
    start();
    program->callOnBus(u"Open"_s);
    ASSERT_TRUE(program->comesToFront());
    EXPECT_TRUE(program->click(u"Bôi đen: "_s)) << "what is out of order can be clicked";
    EXPECT_TRUE(program->comes(u"Phím tắt này đang được ứng dụng khác sử dụng"_s));

    EXPECT_TRUE(program->click(u"Ctrl + Alt + D"_s));
    EXPECT_TRUE(program->goes(u"Phím tắt này đang được"_s));
    const KeyCombination proposed{KeyCode::d, Modifier::control | Modifier::option};
    EXPECT_FALSE(othersGet(proposed));

    const auto record = [&](const std::function<void()>& pressKeys) {
        ASSERT_TRUE(program->click(u"Tralio văn bản bôi đen: Đổi"_s));
        ASSERT_TRUE(program->comes(u"Tralio văn bản bôi đen: Đang chờ"_s));
        pressKeys();
        ASSERT_TRUE(program->comes(u"Tralio văn bản bôi đen: Đổi"_s));
        EXPECT_TRUE(program->comes(u"Bôi đen: Ctrl + Alt + K"_s));
    };
    record([&] {
        desktop.press(u"super+shift+s"_s);  // the other hot key, which must neither act nor be recorded
        EXPECT_FALSE(waitUntil([&] { return desktop.isVisible(u"tralio-snip"_s); }, 1));
        EXPECT_TRUE(program->shows(u"Tralio văn bản bôi đen: Đang chờ"_s));
        desktop.press(u"ctrl+alt+k"_s);
    });
    EXPECT_TRUE(waitUntil([&] { return othersGet(proposed); })) << "it has been given up";

    record([&] { desktop.hold({u"Escape"_s}); });
    EXPECT_FALSE(program->closes(1)) << "by a repeat of the key that ended the recording";
    desktop.release({u"Escape"_s});
    EXPECT_TRUE(program->closePopover()) << "a new press is one";

    desktop.selectInEditor(u"by the new key"_s);
    desktop.press(u"ctrl+alt+k"_s);
    EXPECT_TRUE(program->isAsked(u"by the new key"_s));
}

}  // namespace
}  // namespace tralio
