#include <QHelpEvent>
#include <QLineEdit>
#include <QToolTip>

#include "ui/kit/chip.h"
#include "ui/kit/spinner.h"
#include "ui/kit/stack.h"
#include "ui/kit/switch.h"
#include "ui/kit/tooltip.h"
#include "widget_support.h"

namespace tralio {
namespace {

struct ControlTest : testing::Test {
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
    QWidget another;
    showActive(another);
    m_editor->setFocus();
    showActive(m_window);
    EXPECT_EQ(difference(bare, pictureOf(*m_button)), QRect()) << "the keyboard has moved meanwhile";
    QTest::keyClick(m_editor, Qt::Key_Tab);
    QTest::keyClick(m_button, Qt::Key_Backtab);
    EXPECT_EQ(difference(bare, pictureOf(*m_button)), QRect());
}

TEST_F(ControlTest, busy_and_disabled_buttons_take_no_clicks_and_busy_looks_the_same_in_both) {
    const auto press = [&] {
        QTest::mouseClick(m_button, Qt::LeftButton);
        QTest::keyClick(m_button, Qt::Key_Return);
        QTest::keyClick(m_button, Qt::Key_Space);
    };
    const QImage ready = pictureOf(*m_button);
    m_button->setEnabled(false);
    press();
    const QImage disabled = pictureOf(*m_button);
    EXPECT_NE(ready, disabled);
    m_button->setBusy(true);
    const QImage busy = pictureOf(*m_button);
    EXPECT_NE(disabled, busy);
    m_button->setEnabled(true);
    press();
    EXPECT_EQ(m_clicks.count(), 0);
    EXPECT_EQ(busy, pictureOf(*m_button));
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
        const bool isLive = control != &good;
        const auto changes = [&](const auto& act) { return !changeOf(*control, act).isEmpty(); };
        const QImage rest = pictureOf(*control);
        EXPECT_EQ(changes([&] { enter(*control); }), isLive);
        EXPECT_EQ(changes([&] { QTest::mousePress(control, Qt::LeftButton); }), isLive);
        EXPECT_EQ(difference(rest, pictureOf(*control)).isEmpty(), !isLive);
        EXPECT_EQ(changes([&] { QTest::mouseRelease(control, Qt::LeftButton); }), isLive);
        leave(*control);
        EXPECT_EQ(difference(rest, pictureOf(*control)), QRect());
    }
    Theme::setAppearance({});
    MenuButton menu;
    menu.resize(menu.sizeHint());
    EXPECT_FALSE(changeOf(menu, [&] { enter(menu); }).isEmpty());
    enter(*m_button);
    const QImage hovered = pictureOf(*m_button);
    leave(*m_button);
    EXPECT_EQ(difference(hovered, pictureOf(*m_button)), QRect()) << "it fades from there";
}

TEST_F(ControlTest, an_ampersand_is_read_and_no_shortcut_and_a_label_is_a_text_that_changes) {
    EXPECT_EQ(spokenName(*m_button), u"Dán & Tralio"_s);
    QTest::keyClick(&m_window, Qt::Key_Space, Qt::AltModifier);
    EXPECT_EQ(m_clicks.count(), 0);
    Label label(u"Bản dịch:"_s);
    label.setText(u"0 ký tự"_s);
    EXPECT_EQ(spokenName(label), u"0 ký tự"_s);
    label.resize(100, 20);
    EXPECT_FALSE(changeOf(label, [&] { label.setStyle(text::caption.with(Weight::heavy)); }).isEmpty());
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&label)->role(), QAccessible::StaticText);
}

TEST_F(ControlTest, tabs_tell_only_of_the_users_choice_and_keep_their_width) {
    const QSignalSpy chosen(m_tabs, &TabStrip::selected);
    const int width = m_tabs->sizeHint().width();
    m_tabs->setCurrent(2);
    EXPECT_EQ(chosen.count(), 0);
    EXPECT_EQ(m_tabs->sizeHint().width(), width) << "the heavier label must not move the strip";

    for (int click = 0; click < 2; ++click)
        QTest::mouseClick(m_tabs->childAt(10, 15), Qt::LeftButton);
    EXPECT_EQ(m_tabs->current(), 0);
    EXPECT_EQ(chosen.count(), 1);

    m_window.hide();
    m_tabs->setCurrent(1);
    m_window.show();
    const QRect second = m_tabs->findChildren<Control*>()[1]->geometry();
    EXPECT_EQ(
        pictureOf(*m_tabs).pixelColor(second.left() + 5, second.center().y()), color(ColorRole::accentFill))
        << "what slides while it is seen stands there at once else";
}

TEST_F(ControlTest, a_switch_keeps_its_size_where_there_is_room_and_a_spinner_turns_while_it_can_be_seen) {
    auto* toggle = new Switch;
    auto* spinner = new Spinner(12);
    for (QWidget* added : std::initializer_list<QWidget*>{toggle, spinner})
        m_window.layout()->addWidget(added);
    m_window.resize(500, 500);
    for (const bool isSeen : {false, true, false, true}) {
        m_window.setVisible(isSeen);
        EXPECT_TRUE(nextTurn());
        EXPECT_EQ(spinner->isTurning(), isSeen);
    }
    EXPECT_EQ(toggle->size(), toggle->sizeHint());
}

TEST_F(ControlTest, a_tooltip_is_read_whole_and_its_window_may_be_hidden_while_it_shows) {
    const QString texts[] = {
        u"Dịch"_s, u"Đổi chiều ngôn ngữ"_s, u"Không thể chạy tiến trình cập nhật. "_s.repeated(3)};
    const auto children = [&] {
        return m_window.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    };
    const qsizetype without = children().size();
    const auto bubbles = [&] { return children().size() - without; };
    int height = 0;
    for (const QString& text : texts) {
        setTooltip(m_button, text);
        enter(*m_button);
        ASSERT_TRUE(QTest::qWaitFor([&] { return bubbles() == 1; }));
        const QRect bubble = children().constLast()->geometry();
        EXPECT_LE(bubble.width(), m_window.width());
        if (height == 0)
            height = bubble.height();
        EXPECT_EQ(bubble.height() > height, text == texts[2]) << "what is wider than the window wraps";
        QHelpEvent asked(QEvent::ToolTip, {5, 5}, {5, 5});
        QApplication::sendEvent(m_button, &asked);
        EXPECT_FALSE(QToolTip::isVisible()) << "the toolkit's own shows as well";
        m_window.hide();
        EXPECT_TRUE(QTest::qWaitFor([&] { return bubbles() == 0; }));
        m_window.show();
    }
}

}  // namespace
}  // namespace tralio
