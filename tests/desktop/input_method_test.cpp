#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// A desktop with an input method for Vietnamese, by Telex.
class InputMethod : public testing::Test {
protected:
    InputMethod() {
        desktop.write(u".config/fcitx5/config"_s, u"[Behavior]\nActiveByDefault=True\n"_s);
        desktop.write(u".config/fcitx5/profile"_s,
            u"[Groups/0]\nName=Default\nDefault Layout=us\nDefaultIM=unikey\n"
            "[Groups/0/Items/0]\nName=unikey\n[GroupOrder]\n0=Default\n"_s);
        desktop.write(u".config/fcitx5/conf/unikey.conf"_s, u"InputMethod=Telex\n"_s);
        desktop.start(u"fcitx5"_s, {u"--disable=notificationitem"_s});
        desktop.setVariable(u"QT_IM_MODULE"_s, u"fcitx"_s);
        EXPECT_TRUE(waitUntil([this] { return desktop.run(u"fcitx5-remote"_s, {}) == u"0"; }));
        program.emplace(desktop);
        program->standIn().translatesTo(u"1"_s);
    }

    /// Whether one more translation has been asked for, of this text, and has come.
    [[nodiscard]] bool translates(const QString& text) {
        ++translations;
        const auto& requests = program->standIn().requests();
        const bool asked = waitUntil([&] { return requests.size() >= translations; }, 5) &&
            requests.size() == translations && requests.last().userText() == text;
        const bool shown =
            waitUntil([&] { return program->shownTranslation() == QString::number(translations); });
        program->standIn().translatesTo(QString::number(translations + 1));
        return asked && shown;
    }

    VirtualDesktop desktop;
    std::optional<ProgramRun> program;
    qsizetype translations = 0;
};

TEST_F(InputMethod, what_a_composition_shows_is_translated_and_a_return_that_confirms_it_does_nothing_else) {
    desktop.pressTextHotKey();
    ASSERT_TRUE(waitUntil([&] {
        const bool isTelexOn = desktop.run(u"fcitx5-remote"_s, {u"-n"_s}) == u"unikey";
        return isTelexOn && program->isPopoverInFront();
    }));
    desktop.type(u"Xin chaof tieengs Vieetj"_s);
    desktop.press(u"Return"_s);  // which this method lets through after it has confirmed the last word
    EXPECT_TRUE(translates(u"Xin chào tiếng Việt"_s));

    desktop.press(u"ctrl+a"_s);
    desktop.press(u"super+grave"_s);  // a composition that takes Return for itself
    desktop.type(u"abc"_s);
    desktop.press(u"Return"_s);
    EXPECT_FALSE(waitUntil([&] { return program->standIn().requests().size() > translations; }, 1));
    desktop.press(u"Return"_s);
    EXPECT_TRUE(translates(u"abc"_s));

    desktop.press(u"ctrl+a"_s);
    desktop.type(u"tieesng"_s);
    EXPECT_TRUE(program->comes(u"5 ký tự"_s)) << "counted while it is composed";
    desktop.click(program->popoverArea().topLeft() + QPoint(263, 276));  // the button that translates
    EXPECT_TRUE(translates(u"tiếng"_s)) << "the word was still being composed";
}

}  // namespace
}  // namespace tralio
