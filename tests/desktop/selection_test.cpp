#include <QFile>

#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// Vietnamese, an emoji outside the basic plane, and an accent that no precomposed letter has.
const QString sentence = u"Giá trị x\u0302 của cà phê sữa đá 🙂 rất tốt, thưa bạn."_s;
const QString reply = u"The value of x\u0302 is fine. Ấ Ẩ Ễ Ố Ộ Ặ"_s;

class Selection : public testing::Test {
protected:
    Selection() { program.standIn().translatesTo(reply); }

    /// The selection goes to the model as it is, and its translation comes to the popover.
    void expectTranslated() {
        EXPECT_EQ(program.translateSelection(), sentence);
        EXPECT_TRUE(waitUntil([this] { return program.shownTranslation() == reply; }))
            << "shown: " << program.shownTranslation().toStdString();
        EXPECT_TRUE(waitUntil([this] { return program.isPopoverInFront(); }));
    }

    VirtualDesktop desktop;
    ProgramRun program{desktop};
};

TEST_F(Selection, of_a_gtk_editor_is_translated_and_the_clipboard_stays) {
    desktop.setClipboard(u"vẫn còn đây"_s);
    ASSERT_FALSE(desktop.selectInEditor(sentence).isEmpty());
    expectTranslated();
    EXPECT_EQ(desktop.clipboard(), u"vẫn còn đây"_s);
}

TEST_F(Selection, of_a_qt_editor_is_translated_and_the_clipboard_stays) {
    desktop.setClipboard(u"vẫn còn đây"_s);
    desktop.start(u"featherpad"_s, {u"--standalone"_s, desktop.write(u"a.txt"_s, sentence)});
    ASSERT_FALSE(desktop.bringToFront(u"featherpad"_s).isEmpty());
    desktop.press(u"ctrl+a"_s);
    expectTranslated();
    EXPECT_EQ(desktop.clipboard(), u"vẫn còn đây"_s);
}

TEST_F(Selection, of_a_terminal_is_translated_and_what_runs_in_it_is_not_interrupted) {
    const QString text = desktop.write(u"a.txt"_s, sentence);
    desktop.start(u"xterm"_s,
        {u"-u8"_s, u"-fa"_s, u"Noto Sans Mono"_s, u"-e"_s, u"sh"_s, u"-c"_s,
            u"trap \"touch '%2/interrupted'\" INT; cat '%1'; while true; do sleep 1; done"_s.arg(
                text, desktop.home())});
    const QString window = desktop.bringToFront(u"xterm"_s);
    ASSERT_FALSE(window.isEmpty());
    ASSERT_TRUE(waitUntil([&] {
        desktop.click(window, {60, 10}, 3);
        return desktop.primary() == sentence;
    }));
    expectTranslated();

    // With nothing marked, every layer is tried. None may send the terminal an interrupt.
    desktop.press(u"Escape"_s);
    desktop.run(u"sh"_s, {u"-c"_s, u"xclip -selection primary /dev/null"_s});
    ASSERT_FALSE(desktop.bringToFront(u"xterm"_s).isEmpty());
    EXPECT_TRUE(program.translateSelection().isNull());
    EXPECT_TRUE(waitUntil([this] { return program.isPopoverInFront(); }));
    EXPECT_FALSE(QFile::exists(desktop.home() + u"/interrupted"_s));
    EXPECT_TRUE(desktop.isVisible(u"xterm"_s));
}

TEST_F(Selection, that_only_the_menu_copies_is_translated) {
    desktop.start(QStringLiteral(SELECTION_PROBE), {sentence, u"--menu"_s});
    ASSERT_FALSE(desktop.bringToFront(u"selection-probe"_s).isEmpty());
    expectTranslated();
    EXPECT_EQ(desktop.clipboard(), sentence);
}

/// An application that answers neither the accessibility bus nor for PRIMARY: it has to be asked by keyboard.
class SilentApplication : public Selection {
protected:
    void startProbe() {
        QProcessEnvironment mute = desktop.environment();
        mute.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent"_s);
        desktop.startIn(mute, QStringLiteral(SELECTION_PROBE), {sentence});
        ASSERT_FALSE(desktop.bringToFront(u"selection-probe"_s).isEmpty());
    }
};

TEST_F(SilentApplication, is_copied_from_by_its_shortcut) {
    startProbe();
    expectTranslated();
    EXPECT_EQ(desktop.clipboard(), sentence);
}

TEST_F(SilentApplication, is_copied_from_while_the_user_still_holds_the_hot_key) {
    startProbe();
    desktop.hold({u"super"_s, u"shift"_s, u"d"_s});
    EXPECT_TRUE(waitUntil([this] { return !program.standIn().requests().isEmpty(); }));
    desktop.release({u"d"_s, u"shift"_s, u"super"_s});
    ASSERT_FALSE(program.standIn().requests().isEmpty());
    EXPECT_EQ(program.standIn().requests().last().userText(), sentence);
}

TEST_F(SilentApplication, is_copied_from_by_the_key_that_means_control) {
    desktop.run(u"setxkbmap"_s, {u"us"_s, u"-option"_s, u"ctrl:swapcaps"_s});
    startProbe();
    expectTranslated();
    EXPECT_EQ(desktop.clipboard(), sentence);
}

TEST_F(Selection, left_over_from_another_application_is_not_taken_for_one) {
    ASSERT_FALSE(desktop.selectInEditor(sentence).isEmpty());
    ASSERT_TRUE(waitUntil([this] { return desktop.primary() == sentence; }));
    desktop.start(u"xterm"_s);
    ASSERT_FALSE(desktop.bringToFront(u"xterm"_s).isEmpty());
    EXPECT_TRUE(program.translateSelection().isNull());
    EXPECT_TRUE(waitUntil([this] { return program.isPopoverInFront(); }));
}

TEST_F(Selection, is_translated_when_the_window_manager_has_died) {
    const QString editor = desktop.selectInEditor(sentence);
    ASSERT_FALSE(editor.isEmpty());
    desktop.killWindowManager();
    desktop.run(u"xdotool"_s, {u"windowfocus"_s, u"--sync"_s, editor});
    EXPECT_EQ(program.translateSelection(), sentence);
}

TEST_F(Selection, is_translated_whatever_locks_are_on) {
    desktop.start(u"mousepad"_s, {u"--disable-server"_s, desktop.write(u"a.txt"_s, sentence)});
    for (const QString& lock : {u"Caps_Lock"_s, u"Num_Lock"_s}) {
        desktop.press(lock);  // Caps, then Caps and Num
        ASSERT_FALSE(desktop.bringToFront(u"Mousepad"_s).isEmpty());
        desktop.press(u"ctrl+a"_s);
        expectTranslated();
    }
}

TEST_F(Selection, is_translated_after_the_keyboard_has_been_mapped_otherwise) {
    desktop.start(u"mousepad"_s, {u"--disable-server"_s, desktop.write(u"a.txt"_s, sentence)});
    // Super moves to another modifier, which the old grab knows nothing of.
    desktop.run(
        u"xmodmap"_s, {u"-e"_s, u"clear mod4"_s, u"-e"_s, u"clear mod3"_s, u"-e"_s, u"add mod3 = Super_L"_s});
    ASSERT_FALSE(desktop.bringToFront(u"Mousepad"_s).isEmpty());
    desktop.press(u"ctrl+a"_s);
    expectTranslated();
}

}  // namespace
}  // namespace tralio
