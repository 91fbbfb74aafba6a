#include <QLineEdit>
#include <QSignalSpy>

#include "ui/kit/button.h"
#include "ui/kit/chip.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/spinner.h"
#include "ui/kit/stack.h"
#include "ui/kit/tab_strip.h"
#include "ui/kit/theme.h"
#include "ui/kit/tooltip.h"
#include "widget_support.h"

namespace tralio {
namespace {

class ControlTest : public testing::Test {
protected:
    ControlTest() {
        filled(&m_window, column({.spacing = 4}, {m_editor, m_button, m_chip, m_tabs}));
        showActive(m_window);
        m_editor->setFocus();
    }

    QWidget m_window;
    QLineEdit* m_editor = new QLineEdit;
    Button* m_button = new Button(button::main, {.icon = u"sparkles"_s, .title = u"Dán & Tralio"_s});
    Chip* m_chip = new Chip(u"Chụp"_s);
    TabStrip* m_tabs = new TabStrip({{u"globe"_s, u"Một"_s}, {u"globe"_s, u"Hai"_s}, {u"globe"_s, u"Ba"_s}});
    QSignalSpy m_clicks{m_button, &Button::clicked};
};

TEST_F(ControlTest, the_focus_and_its_ring_come_with_the_keyboard_only_and_outlive_a_change_of_windows) {
    const QImage bare = pictureOf(*m_button);
    QTest::mouseClick(m_button, Qt::LeftButton);
    EXPECT_TRUE(m_editor->hasFocus()) << "the caret stays where the user writes";
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
        QTest::keyClick(m_button, key);
    EXPECT_EQ(m_clicks.count(), 4);
    m_button->setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(difference(bare, pictureOf(*m_button)), QRect());

    m_editor->setFocus();
    QTest::keyClick(m_editor, Qt::Key_Tab);
    ASSERT_TRUE(m_button->hasFocus());
    EXPECT_FALSE(difference(bare, pictureOf(*m_button)).isEmpty());
    QFocusEvent away(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QFocusEvent back(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(m_button, &away);
    QApplication::sendEvent(m_button, &back);
    EXPECT_TRUE(m_button->showsFocusRing());
    QTest::keyClick(m_button, Qt::Key_Backtab);
    EXPECT_EQ(difference(bare, pictureOf(*m_button)), QRect());
}

TEST_F(ControlTest, busy_and_disabled_buttons_take_no_clicks_and_busy_looks_the_same_in_both) {
    const auto press = [&] {
        QTest::mouseClick(m_button, Qt::LeftButton);
        QTest::keyClick(m_button, Qt::Key_Return);
        QTest::keyClick(m_button, Qt::Key_Space);
    };
    const QPoint ground(4, m_button->height() / 2);
    const QImage ready = pictureOf(*m_button);
    m_button->setEnabled(false);
    press();
    const QImage disabled = pictureOf(*m_button);
    EXPECT_NE(ready.pixelColor(ground), disabled.pixelColor(ground));
    m_button->setEnabled(true);
    m_button->setBusy(true);
    press();
    const QImage busy = pictureOf(*m_button);
    EXPECT_EQ(m_clicks.count(), 0);
    EXPECT_FALSE(difference(disabled, busy).isEmpty());
    m_button->setEnabled(false);
    EXPECT_EQ(difference(busy, pictureOf(*m_button)), QRect());
    m_button->setEnabled(true);
    m_button->setBusy(false);
    press();
    EXPECT_EQ(m_clicks.count(), 3);
}

TEST_F(ControlTest, what_is_under_the_pointer_and_what_is_held_down_looks_like_it) {
    Theme::setAppearance({.reducedMotion = true});
    m_chip->setState(Chip::State::trouble);
    Chip good(u"Tốt"_s);
    good.resize(good.sizeHint());
    for (QWidget* control : std::initializer_list<QWidget*>{m_button, m_chip, &good}) {
        const QPointF middle = QRectF(control->rect()).center();
        QEnterEvent enter(middle, middle, control->mapToGlobal(middle));
        QEvent leave(QEvent::Leave);
        const QImage rest = pictureOf(*control);
        QApplication::sendEvent(control, &enter);
        const QImage hovered = pictureOf(*control);
        QTest::mousePress(control, Qt::LeftButton);
        const QImage held = pictureOf(*control);
        QTest::mouseRelease(control, Qt::LeftButton);
        const bool isLive = control != &good;
        EXPECT_EQ(difference(rest, hovered).isEmpty(), !isLive);
        EXPECT_EQ(difference(hovered, held).isEmpty(), !isLive);
        EXPECT_EQ(difference(rest, held).isEmpty(), !isLive);
        EXPECT_EQ(difference(hovered, pictureOf(*control)), QRect());
        QApplication::sendEvent(control, &leave);
        EXPECT_EQ(difference(rest, pictureOf(*control)), QRect());
    }
    Theme::setAppearance({});
}

TEST_F(ControlTest, captions_titles_and_labels_are_spoken_and_an_ampersand_is_read_and_no_shortcut) {
    EXPECT_EQ(spokenName(*m_button), u"Dán & Tralio"_s);
    QTest::keyClick(&m_window, Qt::Key_Space, Qt::AltModifier);
    EXPECT_EQ(m_clicks.count(), 0);
    EXPECT_TRUE(m_button->shortcut().isEmpty());

    Button quit(button::icon, {.icon = u"power"_s});
    setTooltip(&quit, u"Thoát"_s);
    EXPECT_EQ(spokenName(quit), u"Thoát"_s) << "what shows only an icon is called by its tooltip";
    setTooltip(m_button, u"Dịch"_s);
    m_button->setSpokenCaption(u"Nguồn"_s);
    m_button->setTitle(u"Tiếng Anh"_s);
    EXPECT_EQ(spokenName(*m_button), u"Nguồn: Tiếng Anh"_s);
    Label label(u"Bản dịch:"_s);
    label.setText(u"0 ký tự"_s);
    EXPECT_EQ(spokenName(label), u"0 ký tự"_s);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&label)->role(), QAccessible::StaticText);

    IconView picture({u"globe"_s, 16}, ColorRole::text);
    picture.show();
    const auto isPassedOver = [&] {
        return bool(QAccessible::queryAccessibleInterface(&picture)->state().invisible);
    };
    EXPECT_TRUE(isPassedOver());
    picture.setAccessibleName(u"Trang web"_s);
    EXPECT_FALSE(isPassedOver());
}

TEST_F(ControlTest, only_a_chip_that_reports_trouble_can_be_clicked_and_reached) {
    const QSignalSpy clicks(m_chip, &Chip::clicked);
    for (const Chip::State state : {Chip::State::good, Chip::State::trouble}) {
        const bool troubled = state == Chip::State::trouble;
        m_chip->setState(state);
        QTest::mouseClick(m_chip, Qt::LeftButton);
        EXPECT_EQ(clicks.count(), troubled ? 1 : 0);
        m_button->setFocus();
        QTest::keyClick(m_button, Qt::Key_Tab);
        EXPECT_EQ(m_chip->hasFocus(), troubled);
        EXPECT_EQ(m_chip->showsFocusRing(), troubled);
    }
}

TEST_F(ControlTest, tabs_tell_only_of_the_users_choice_and_are_one_stop_for_the_keyboard) {
    const QSignalSpy chosen(m_tabs, &TabStrip::selected);
    const int width = m_tabs->sizeHint().width();
    m_tabs->setCurrent(2);
    EXPECT_EQ(chosen.count(), 0);
    EXPECT_EQ(m_tabs->sizeHint().width(), width) << "the heavier label must not move the strip";

    m_button->setFocus();
    QTest::keyClick(m_button, Qt::Key_Tab);
    QWidget* third = m_window.focusWidget();
    ASSERT_EQ(third->accessibleName(), u"Ba"_s);
    QTest::keyClick(third, Qt::Key_Left);
    EXPECT_EQ(m_tabs->current(), 1);
    QTest::mouseClick(m_tabs->childAt(10, 15), Qt::LeftButton);
    QTest::mouseClick(m_tabs->childAt(10, 15), Qt::LeftButton);
    EXPECT_EQ(m_tabs->current(), 0);
    EXPECT_EQ(chosen.count(), 2);

    m_window.hide();
    m_tabs->setCurrent(1);
    m_window.show();
    const QRect second = m_tabs->findChildren<Control*>()[1]->geometry();
    EXPECT_EQ(
        pictureOf(*m_tabs).pixelColor(second.left() + 5, second.center().y()), color(ColorRole::accentFill))
        << "what slides while it is seen stands there at once else";
}

TEST_F(ControlTest, a_spinner_turns_only_while_it_can_be_seen) {
    auto* spinner = new Spinner(12);
    m_window.layout()->addWidget(spinner);
    EXPECT_FALSE(spinner->isTurning());
    spinner->show();
    EXPECT_TRUE(spinner->isTurning());
    m_window.hide();
    EXPECT_FALSE(spinner->isTurning());
    m_window.show();
    EXPECT_TRUE(spinner->isTurning());
}

TEST_F(ControlTest, a_tooltip_is_read_whole_and_its_window_may_be_hidden_while_it_shows) {
    setTooltip(m_button, u"Dịch"_s);
    const auto children = [&] {
        return m_window.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    };
    const qsizetype without = children().size();
    const auto bubbles = [&] { return children().size() - without; };
    int height = 0;
    for (int round = 0; round < 3; ++round) {
        QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), QPointF(5, 5));
        QApplication::sendEvent(m_button, &enter);
        ASSERT_TRUE(QTest::qWaitFor([&] { return bubbles() == 1; }));
        const QRect bubble = children().constLast()->geometry();
        EXPECT_LE(bubble.width(), m_window.width());
        if (round == 0)
            height = bubble.height();
        else
            EXPECT_GT(bubble.height(), height) << "what is wider than the window wraps";
        setTooltip(m_button, u"Không thể chạy tiến trình cập nhật. "_s.repeated(3));
        m_window.hide();
        EXPECT_TRUE(QTest::qWaitFor([&] { return bubbles() == 0; }));
        m_window.show();
    }
}

}  // namespace
}  // namespace tralio
