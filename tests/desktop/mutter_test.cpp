#include <gmock/gmock.h>
#include <linux/input-event-codes.h>

#include "desktop/mutter_desktop.h"
#include "desktop/program_run.h"
#include "platform/linux/atspi/atspi_front.h"
#include "support/ordinary_user.h"
#include "support/print_to.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// Before main() makes a folder that only its maker can remove.
const OrdinaryProcess ordinaryProcess;

class Mutter : public testing::Test {
protected:
    /// With the keyboard.
    [[nodiscard]] bool startsEditor(const QString& text) {
        m_accessibility.connectTo(
            desktop.callOnBus(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus.GetAddress"_s)
                .section(u'\'', 1, 1));
        desktop.start(u"mousepad"_s, {desktop.write(u"text.txt"_s, text)});
        // It gets the keyboard from another window only.
        return waitUntil([&] {
            program.callOnBus(u"Open"_s);
            return returnsToEditor(1);
        });
    }
    /// Closes the popover.
    [[nodiscard]] bool returnsToEditor(int seconds = 10) {
        return waitUntil(
            [&] {
                desktop.press({KEY_ESC});
                const auto front = activeAtspiApplication(m_accessibility);
                return front && front->name == u"mousepad";
            },
            seconds);
    }

    MutterDesktop desktop;
    ProgramRun program{desktop};

private:
    AtspiBus m_accessibility;
};

TEST_F(Mutter, gives_what_is_selected_by_accessibility_or_to_the_popover_once_it_has_the_focus) {
    const QString text = u"Ngôn ngữ trong trình soạn thảo"_s;
    ASSERT_TRUE(startsEditor(text));
    desktop.press({KEY_LEFTCTRL, KEY_A});
    EXPECT_EQ(program.translateSelection(), text);
    EXPECT_TRUE(waitUntil([&] { return !program.shownTranslation().isEmpty(); }));

    desktop.setAccessibility(false);
    ASSERT_TRUE(returnsToEditor());
    // What is there the first time may have been marked by anybody, long ago.
    EXPECT_EQ(program.translateSelection(), QString());
    const qsizetype before = program.standIn().requests().size();
    desktop.press({KEY_ENTER});
    EXPECT_TRUE(waitUntil([&] { return program.standIn().requests().size() > before; }));
    EXPECT_EQ(program.standIn().requests().last().userText(), text);

    EXPECT_TRUE(waitUntil(
        [&] {
            if (!returnsToEditor())
                return false;
            desktop.press({KEY_END});
            desktop.press({KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_LEFT});
            return program.translateSelection() == u"thảo";
        },
        30))
        << "what is marked since";
}

}  // namespace
}  // namespace tralio
