#include <QLineEdit>
#include <QShortcut>

#include "widget_support.h"

namespace tralio {
namespace {

struct MenuTest : testing::Test {
    MenuTest() {
        m_window.resize(530, 585);
        m_button->move(20, 20);
        m_button->setTitle(u"Hai"_s);
        m_button->setEntries({{.title = u"Một"_s}, {.title = u"Hai"_s}, {.title = u"Ba"_s, .enabled = false},
            {.title = u"Bốn"_s}});
        m_button->resize(m_button->sizeHint());
        m_editor->move(200, 20);
        showActive(m_window);
        m_editor->setFocus();
    }

    /// Keys go where the focus is, as the user's do.
    void press(auto... keys) { (QTest::keyClick(QApplication::focusWidget(), keys), ...); }
    [[nodiscard]] QVariant lastChoice() { return m_chosen.value(m_chosen.size() - 1).value(0); }
    [[nodiscard]] bool isOpen() const { return m_button->openMenu() != nullptr; }

    QWidget m_window;
    MenuButton* m_button = new MenuButton(text::menu, {}, &m_window);
    QLineEdit* m_editor = new QLineEdit(&m_window);
    QSignalSpy m_chosen{m_button, &MenuButton::chosen};
};

TEST_F(MenuTest, the_keyboard_opens_moves_over_what_is_disabled_and_chooses_with_a_key_that_is_not_held) {
    press(Qt::Key_Backtab, Qt::Key_Down, Qt::Key_Down, Qt::Key_Return);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(lastChoice(), 3);
    EXPECT_TRUE(m_button->hasFocus() && m_button->showsFocusRing());
    press(Qt::Key_Space, Qt::Key_Up, Qt::Key_Up, Qt::Key_Space);
    EXPECT_EQ(lastChoice(), 0);
    press(Qt::Key_Return, Qt::Key_End, Qt::Key_Enter);
    EXPECT_EQ(lastChoice(), 3);

    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) {
        press(key);
        QKeyEvent repeat(QEvent::KeyPress, key, {}, {}, true);
        QApplication::sendEvent(QApplication::focusWidget(), &repeat);
        ASSERT_TRUE(isOpen());
        press(Qt::Key_Escape);
    }
    EXPECT_EQ(m_chosen.count(), 3);
}

TEST_F(MenuTest, a_click_chooses_and_gives_the_focus_back_and_so_does_one_movement_of_press_and_drag) {
    QTest::mouseClick(m_button, Qt::LeftButton);
    ASSERT_TRUE(isOpen());
    const QWidget* menu = m_button->openMenu();
    m_button->click();
    EXPECT_EQ(m_button->openMenu(), menu) << "one that is open stays the one";
    QWidget* first = m_button->openMenu()->childAt(m_button->geometry().bottomLeft() + QPoint(20, 15));
    ASSERT_NE(first, nullptr);
    QTest::mouseClick(first, Qt::LeftButton);
    EXPECT_EQ(lastChoice(), 0);
    EXPECT_TRUE(m_editor->hasFocus());

    QTest::mousePress(m_button, Qt::LeftButton);
    const QPoint second(20, m_button->height() + 4 + 4 + 26 + 13);
    QTest::mouseMove(m_button, second);
    QTest::mouseRelease(m_button, Qt::LeftButton, {}, second);
    EXPECT_EQ(lastChoice(), 1);
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(m_editor->hasFocus());
}

TEST_F(MenuTest, escape_a_click_beside_the_menu_and_the_end_of_its_window_only_close_it) {
    QShortcut closeWindow(QKeySequence(Qt::Key_Escape), &m_window);
    const QSignalSpy closed(&closeWindow, &QShortcut::activated);
    m_button->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Down, Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(m_button->hasFocus());
    EXPECT_EQ(closed.count(), 0);

    QTest::mouseClick(m_button, Qt::LeftButton);
    ASSERT_TRUE(isOpen());
    QTest::mouseClick(m_window.childAt(400, 500), Qt::LeftButton, {}, QPoint(400, 500));
    EXPECT_FALSE(isOpen());

    QTest::mouseClick(m_button, Qt::LeftButton);
    m_window.resize(m_window.size() + QSize(1, 0));
    EXPECT_FALSE(isOpen()) << "it would stand beside its button";
    QTest::mouseClick(m_button, Qt::LeftButton);
    m_window.hide();
    EXPECT_FALSE(isOpen());
    showActive(m_window);
    QTest::mouseClick(m_button, Qt::LeftButton);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(m_chosen.count(), 0);
}

TEST_F(MenuTest, a_menu_near_an_edge_stays_inside_the_window) {
    m_button->move(460, 550);
    QTest::mouseClick(m_button, Qt::LeftButton);
    const QRect items = m_button->openMenu()->childrenRect();
    EXPECT_TRUE(m_window.rect().contains(items) && !items.isEmpty());
    EXPECT_LT(items.bottom(), m_button->geometry().top());
}

}  // namespace
}  // namespace tralio
