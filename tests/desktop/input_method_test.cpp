#include "desktop/program_run.h"
#include "desktop/virtual_desktop.h"
#include "support/testing.h"

namespace tralio {
namespace {

/// A desktop with an input method for Vietnamese, by Telex, for all that is started later.
class VietnameseDesktop final {
public:
    VietnameseDesktop() {
        desktop.write(u".config/fcitx5/config"_s, u"[Behavior]\nActiveByDefault=True\n"_s);
        desktop.write(u".config/fcitx5/profile"_s,
            u"[Groups/0]\nName=Default\nDefault Layout=us\nDefaultIM=unikey\n"
            "[Groups/0/Items/0]\nName=unikey\n[GroupOrder]\n0=Default\n"_s);
        desktop.write(u".config/fcitx5/conf/unikey.conf"_s, u"InputMethod=Telex\n"_s);
        desktop.start(u"fcitx5"_s, {u"--disable=notificationitem"_s});
        desktop.setVariable(u"QT_IM_MODULE"_s, u"fcitx"_s);
        const bool runs = waitUntil([this] { return desktop.run(u"fcitx5-remote"_s, {}) == u"0"; });
        if (!runs)
            throw std::runtime_error("fcitx5 does not start");
    }

    /// Whether the input method has taken up what has the keyboard.
    [[nodiscard]] bool isTelexOn() const { return desktop.run(u"fcitx5-remote"_s, {u"-n"_s}) == u"unikey"; }

    VirtualDesktop desktop;
};

class InputMethod : public testing::Test {
protected:
    InputMethod() { m_program.standIn().translatesTo(u"1"_s); }

    /// Whether one more translation has been asked for, of this text, and has come.
    [[nodiscard]] bool translates(const QString& text) {
        ++m_translations;
        const auto& requests = m_program.standIn().requests();
        const bool asked = waitUntil([&] { return requests.size() >= m_translations; }, 5) &&
            requests.size() == m_translations && requests.last().userText() == text;
        const bool shown =
            waitUntil([&] { return m_program.shownTranslation() == QString::number(m_translations); });
        m_program.standIn().translatesTo(QString::number(m_translations + 1));
        return asked && shown;
    }

    void press(const QString& keys) { m_session.desktop.press(keys); }

    VietnameseDesktop m_session;
    ProgramRun m_program{m_session.desktop};
    qsizetype m_translations = 0;
};

TEST_F(InputMethod, what_a_composition_shows_is_translated_and_a_return_that_confirms_it_does_nothing_else) {
    press(u"super+shift+d"_s);
    ASSERT_TRUE(waitUntil([&] { return m_program.isPopoverInFront() && m_session.isTelexOn(); }));
    m_session.desktop.type(u"Xin chaof tieengs Vieetj"_s);
    press(u"Return"_s);  // which this method lets through after it has confirmed the last word
    EXPECT_TRUE(translates(u"Xin chào tiếng Việt"_s));

    press(u"ctrl+a"_s);
    press(u"super+grave"_s);  // a composition that takes Return for itself
    m_session.desktop.type(u"abc"_s);
    press(u"Return"_s);
    EXPECT_FALSE(waitUntil([&] { return m_program.standIn().requests().size() > m_translations; }, 1));
    press(u"Return"_s);
    EXPECT_TRUE(translates(u"abc"_s));

    press(u"ctrl+a"_s);
    m_session.desktop.type(u"tieesng"_s);
    EXPECT_TRUE(waitUntil([&] { return m_program.shows(u"5 ký tự"_s); })) << "counted while it is composed";
    const QPoint button = m_program.popoverArea().topLeft() + QPoint(263, 276);
    m_session.desktop.run(u"xdotool"_s,
        {u"mousemove"_s, QString::number(button.x()), QString::number(button.y()), u"click"_s, u"1"_s});
    EXPECT_TRUE(translates(u"tiếng"_s)) << "the word was still being composed";
}

}  // namespace
}  // namespace tralio
