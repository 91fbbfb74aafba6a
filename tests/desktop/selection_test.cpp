#include <gmock/gmock.h>

#include "desktop/program_run.h"
#include "support/print_to.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

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
    desktop.start(u"mousepad"_s, {u"--disable-server"_s, desktop.write(u"a.txt"_s, sentence)});
    ASSERT_FALSE(desktop.bringToFront(u"Mousepad"_s).isEmpty());
    desktop.press(u"ctrl+a"_s);
    expectTranslated();
    EXPECT_EQ(desktop.clipboard(), u"vẫn còn đây"_s);

    const auto& request = program.standIn().requests().last();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/v1/chat/completions");
    EXPECT_EQ(request.header("Content-Type"), "application/json");
    EXPECT_THAT(request.header("Authorization").toStdString(), testing::StartsWith("Bearer sk-"));
    EXPECT_EQ(request.json.keys(), QStringList({u"messages"_s, u"model"_s, u"stream"_s, u"temperature"_s}));
}

TEST_F(Selection, of_a_qt_editor_is_translated_and_the_clipboard_stays) {
    desktop.setClipboard(u"vẫn còn đây"_s);
    desktop.start(u"featherpad"_s, {u"--standalone"_s, desktop.write(u"a.txt"_s, sentence)});
    ASSERT_FALSE(desktop.bringToFront(u"featherpad"_s).isEmpty());
    desktop.press(u"ctrl+a"_s);
    expectTranslated();
    EXPECT_EQ(desktop.clipboard(), u"vẫn còn đây"_s);
}

TEST_F(Selection, of_a_browser_page_is_translated_and_the_clipboard_stays) {
    desktop.setClipboard(u"vẫn còn đây"_s);
    const QString page = desktop.write(
        u"a.html"_s,
        u"<meta charset=utf-8><body style='margin:0;font-size:24px'><p style='margin:0'>%1</p>"_s.arg(
            sentence));
    desktop.start(u"chromium"_s,
                  {u"--no-sandbox"_s, u"--test-type"_s, u"--disable-gpu"_s, u"--no-first-run"_s,
                   u"--disable-background-networking"_s, u"--disable-component-update"_s, u"--disable-sync"_s,
                   u"--user-data-dir="_s + desktop.home() + u"/chromium"_s, u"--app=file://"_s + page});
    const QString window = desktop.bringToFront(u"chromium"_s);
    ASSERT_FALSE(window.isEmpty());
    ASSERT_TRUE(waitUntil([&] {
        desktop.click(window, {300, 15}, 3);
        return desktop.run(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"primary"_s}) == sentence;
    }));
    expectTranslated();
    EXPECT_EQ(desktop.clipboard(), u"vẫn còn đây"_s);
}

TEST_F(Selection, of_a_terminal_is_translated_and_what_runs_in_it_is_not_interrupted) {
    const QString text = desktop.write(u"a.txt"_s, sentence);
    desktop.start(u"xterm"_s, {u"-u8"_s, u"-fa"_s, u"Noto Sans Mono"_s, u"-e"_s, u"sh"_s, u"-c"_s,
                               u"cat '%1'; sleep 100; touch '%2/ended'"_s.arg(text, desktop.home())});
    const QString window = desktop.bringToFront(u"xterm"_s);
    ASSERT_FALSE(window.isEmpty());
    ASSERT_TRUE(waitUntil([&] {
        desktop.click(window, {60, 10}, 3);
        return desktop.run(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"primary"_s}) == sentence;
    }));
    expectTranslated();

    // With nothing marked, every layer is tried. None may send the terminal an interrupt.
    desktop.press(u"Escape"_s);
    desktop.setClipboard(u"khác"_s);
    desktop.run(u"sh"_s, {u"-c"_s, u"xclip -selection primary /dev/null"_s});
    ASSERT_FALSE(desktop.bringToFront(u"xterm"_s).isEmpty());
    EXPECT_TRUE(program.translateSelection().isNull());
    EXPECT_TRUE(waitUntil([this] { return program.isPopoverInFront(); }));
    EXPECT_TRUE(desktop.isVisible(u"xterm"_s));
}

TEST_F(Selection, that_only_the_menu_copies_is_translated) {
    desktop.start(QStringLiteral(SELECTION_PROBE), {sentence, u"--menu"_s});
    ASSERT_FALSE(desktop.bringToFront(u"selection-probe"_s).isEmpty());
    expectTranslated();
    EXPECT_EQ(desktop.clipboard(), sentence);
}

TEST_F(Selection, of_an_application_that_tells_nothing_is_copied_by_its_shortcut) {
    QProcessEnvironment mute = desktop.environment();
    mute.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent"_s);  // no bus, no accessibility
    desktop.startIn(mute, QStringLiteral(SELECTION_PROBE), {sentence});
    ASSERT_FALSE(desktop.bringToFront(u"selection-probe"_s).isEmpty());
    expectTranslated();
    EXPECT_EQ(desktop.clipboard(), sentence);
}

TEST_F(Selection, left_over_from_another_application_is_not_taken_for_one) {
    desktop.start(u"mousepad"_s, {u"--disable-server"_s, desktop.write(u"a.txt"_s, sentence)});
    ASSERT_FALSE(desktop.bringToFront(u"Mousepad"_s).isEmpty());
    desktop.press(u"ctrl+a"_s);
    ASSERT_TRUE(waitUntil([this] {
        return desktop.run(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"primary"_s}) == sentence;
    }));
    desktop.start(u"xterm"_s);
    ASSERT_FALSE(desktop.bringToFront(u"xterm"_s).isEmpty());
    EXPECT_TRUE(program.translateSelection().isNull());
    EXPECT_TRUE(waitUntil([this] { return program.isPopoverInFront(); }));
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
    desktop.run(u"xmodmap"_s,
                {u"-e"_s, u"clear mod4"_s, u"-e"_s, u"clear mod3"_s, u"-e"_s, u"add mod3 = Super_L"_s});
    ASSERT_FALSE(desktop.bringToFront(u"Mousepad"_s).isEmpty());
    desktop.press(u"ctrl+a"_s);
    expectTranslated();
}

}  // namespace
}  // namespace tralio
