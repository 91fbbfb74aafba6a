#include <algorithm>

#include "desktop/kwin_desktop.h"
#include "desktop/program_run.h"
#include "platform/linux/atspi/atspi_element.h"
#include "support/ordinary_user.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// Before main() makes a folder that only its maker can remove.
const OrdinaryProcess ordinaryProcess;

/// The first text at or below an object.
AtspiReference findText(const AtspiReference& object, const AtspiQuestion& question) {
    if (roleOf(object, question) == AtspiRole::text)
        return object;
    for (const AtspiReference& child : childrenOf(object, question))
        if (const AtspiReference found = findText(child, question); !found.isNull())
            return found;
    return {};
}

bool hasActiveWindow(const AtspiReference& application, const AtspiQuestion& question) {
    return std::ranges::any_of(
        childrenOf(application, question),
        [&](const AtspiReference& window) {
            return statesOf(window, question).contains(AtspiState::active);
        });
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
                const AtspiReference object = findText(application, question);
                const auto call = [&](const QString& method, const QVariantList& arguments) {
                    return accessibility
                        .call(object, u"org.a11y.atspi.Text"_s, method, arguments, question.budget)
                        .value_or(QVariantList());
                };
                // It shows itself first, reads its file then, and the compositor may still be about to bring
                // it to the front.
                const int length = static_cast<int>(text.size());
                if (call(u"GetSelection"_s, {0}) == QVariantList{0, length})
                    return hasActiveWindow(application, question);
                if (call(u"GetText"_s, {0, -1}) == QVariantList{text})
                    call(u"AddSelection"_s, {0, length});
            }
            return false;
        }));
    }

    KwinDesktop desktop;
    AtspiBus accessibility;
    ProgramRun program{desktop};
};

TEST_F(Kwin, gives_the_hot_keys_by_its_portal_also_after_a_crash_there_and_a_press_translates_the_selection) {
    ASSERT_TRUE(waitUntil(
        [&] {
            const QString shortcuts = desktop.shortcuts();
            return shortcuts.contains(u"translate-selection.LOGO+SHIFT+d") &&
                shortcuts.contains(u"capture-screen.LOGO+SHIFT+s");
        },
        30));
    desktop.endPortalBackend();

    startEditor(u"Ngôn ngữ trong trình soạn thảo"_s);
    ASSERT_FALSE(desktop.hasWindow(u"Tralio"_s));
    EXPECT_TRUE(waitUntil([&] { return program.translateSelection() == u"Ngôn ngữ trong trình soạn thảo"; }));
    EXPECT_TRUE(waitUntil([&] { return desktop.hasWindow(u"Tralio"_s); }));
    EXPECT_TRUE(waitUntil([&] { return !program.shownTranslation().isEmpty(); }));

    desktop.bringToFront(u"text.txt"_s);
    EXPECT_TRUE(waitUntil([&] { return !desktop.hasWindow(u"Tralio"_s); }));
    EXPECT_TRUE(program.isRunning());
}

}  // namespace
}  // namespace tralio
