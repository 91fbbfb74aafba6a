#include <linux/input-event-codes.h>

#include "desktop/mutter_desktop.h"
#include "desktop/program_run.h"
#include "platform/linux/atspi/atspi_front.h"
#include "support/ordinary_user.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// Before main() makes a folder that only its maker can remove.
const OrdinaryProcess ordinaryProcess;

class Mutter : public testing::Test {
protected:
    /// With the keyboard.
    [[nodiscard]] bool startsEditor() {
        m_accessibility.connectTo(
            desktop.callOnBus(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus.GetAddress"_s)
                .section(u'\'', 1, 1));
        desktop.start(u"mousepad"_s, {desktop.write(u"text.txt"_s, text)});
        // It gets the keyboard from another window only.
        program.callOnBus(u"Open"_s);
        return waitUntil([this] { return front() == u"tralio"; }) && returnsToEditor();
    }
    /// Closes the popover once it is there.
    [[nodiscard]] bool returnsToEditor() {
        return waitUntil([this] { return front() != u"mousepad"; }) && waitUntil([this] {
            desktop.press({KEY_ESC});
            return front() == u"mousepad";
        });
    }
    /// Whether the text reaches the model after all of it was selected and the hot key pressed.
    [[nodiscard]] bool translatesInEditor() {
        return waitUntil(
            [this] {
                desktop.press({KEY_LEFTCTRL, KEY_A});
                return program.translateSelection() == text || (returnsToEditor() && false);
            },
            30);
    }
    [[nodiscard]] QString front() const {
        const auto application = activeAtspiApplication(m_accessibility);
        return application ? application->name : QString();
    }

    const QString text = u"Ngôn ngữ trong trình soạn thảo"_s;
    MutterDesktop desktop;
    ProgramRun program{desktop};

private:
    AtspiBus m_accessibility;
};

TEST_F(Mutter, gives_what_accessibility_tells_is_selected) {
    ASSERT_TRUE(startsEditor());
    EXPECT_TRUE(translatesInEditor());
    EXPECT_TRUE(waitUntil([&] { return !program.shownTranslation().isEmpty(); }));
}

TEST_F(Mutter, gives_what_is_selected_to_the_popover_once_it_has_the_focus) {
    ASSERT_TRUE(startsEditor());
    desktop.setAccessibility(false);
    // With nothing there the first time, what comes later is known to be new.
    EXPECT_EQ(program.translateSelection(), QString());
    ASSERT_TRUE(returnsToEditor());
    EXPECT_TRUE(translatesInEditor());
}

}  // namespace
}  // namespace tralio
