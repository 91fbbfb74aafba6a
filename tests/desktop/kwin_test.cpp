#include <gmock/gmock.h>

#include "desktop/kwin_desktop.h"
#include "desktop/program_run.h"
#include "platform/linux/atspi/atspi_element.h"
#include "support/ordinary_user.h"
#include "support/print_to.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// Before main() makes a folder that only its maker can remove.
const OrdinaryProcess ordinaryProcess;

/// The first text at or below an object.
AtspiReference findText(const AtspiReference& object, const AtspiQuestion& question) {
    if (roleOf(object, question) == AtspiRole::text)
        return object;
    for (const AtspiReference& child : childrenOf(object, question)) {
        if (const AtspiReference found = findText(child, question); !found.isNull())
            return found;
    }
    return {};
}

class Kwin : public testing::Test {
protected:
    Kwin() { accessibility.open(); }

    /// An editor in which a text is selected; by accessibility, for want of a keyboard.
    void startEditor(const QString& text) {
        const qint64 editor = desktop.start(u"mousepad"_s, {desktop.write(u"text.txt"_s, text)}).processId();
        ASSERT_TRUE(waitUntil([&] {
            const AtspiQuestion question{accessibility, TimeBudget(1000)};
            for (const AtspiReference& application : childrenOf(AtspiBus::desktop(), question)) {
                if (accessibility.processOf(application.service, question.budget) != editor)
                    continue;
                const auto done = accessibility.call(findText(application, question),
                                                     u"org.a11y.atspi.Text"_s, u"AddSelection"_s,
                                                     {0, static_cast<int>(text.size())}, question.budget);
                if (done && done->value(0).toBool())
                    return true;
            }
            return false;
        }));
    }

    KwinDesktop desktop;
    AtspiBus accessibility;
    ProgramRun program{desktop};
};

TEST_F(Kwin, takes_the_hot_keys_through_its_portal_and_a_press_translates_what_is_selected) {
    ASSERT_TRUE(waitUntil([&] { return !desktop.shortcuts().isEmpty(); }, 30));
    EXPECT_THAT(desktop.shortcuts().toStdString(),
                testing::AllOf(testing::HasSubstr("translate-selection.LOGO+SHIFT+d"),
                               testing::HasSubstr("capture-screen.LOGO+SHIFT+s")));

    startEditor(u"Ngôn ngữ trong trình soạn thảo"_s);
    ASSERT_FALSE(desktop.hasWindow(u"Tralio"_s));
    EXPECT_EQ(program.translateSelection(), u"Ngôn ngữ trong trình soạn thảo");
    EXPECT_TRUE(waitUntil([&] { return desktop.hasWindow(u"Tralio"_s); }));
    EXPECT_TRUE(waitUntil([&] { return !program.shownTranslation().isEmpty(); }));
}

}  // namespace
}  // namespace tralio
