#include <gmock/gmock.h>
#include <linux/input-event-codes.h>

#include "desktop/mutter_desktop.h"
#include "desktop/program_run.h"
#include "support/ordinary_user.h"
#include "support/print_to.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// Before main() makes a folder that only its maker can remove.
const OrdinaryProcess ordinaryProcess;

class Mutter : public testing::Test {
protected:
    /// The text that reaches the model after everything in an editor was selected and the hot key pressed.
    [[nodiscard]] bool translatesInEditor(const QString& text) {
        desktop.start(u"mousepad"_s, {desktop.write(u"text.txt"_s, text)});
        return waitUntil(
            [&] {
                desktop.press({KEY_ESC});  // closes the popover, which opened before the editor did
                desktop.press({KEY_LEFTCTRL, KEY_A});
                return program.translateSelection() == text;
            },
            30);
    }

    MutterDesktop desktop;
    ProgramRun program{desktop};
};

TEST_F(Mutter, gives_what_accessibility_tells_is_selected) {
    EXPECT_TRUE(translatesInEditor(u"Ngôn ngữ trong trình soạn thảo"_s));
    EXPECT_TRUE(waitUntil([&] { return !program.shownTranslation().isEmpty(); }));
}

TEST_F(Mutter, gives_what_is_selected_to_the_popover_once_it_has_the_focus) {
    const QString text = u"Ngôn ngữ trong trình soạn thảo"_s;
    ASSERT_TRUE(translatesInEditor(text)) << "by accessibility: the editor is there";
    desktop.setAccessibility(false);
    desktop.press({KEY_ESC});
    // What is there the first time may have been marked by anybody, long ago.
    EXPECT_EQ(program.translateSelection(), QString());
    const qsizetype before = program.standIn().requests().size();
    desktop.press({KEY_ENTER});
    EXPECT_TRUE(waitUntil([&] { return program.standIn().requests().size() > before; }));
    EXPECT_EQ(program.standIn().requests().last().userText(), text);

    EXPECT_TRUE(waitUntil(
        [&] {
            desktop.press({KEY_ESC});
            desktop.press({KEY_END});
            desktop.press({KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_LEFT});
            return program.translateSelection() == u"thảo";
        },
        30))
        << "what is marked since";
}

}  // namespace
}  // namespace tralio
