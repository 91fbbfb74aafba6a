#include "ui/history/history_view.h"

#include <QAccessible>
#include <QScrollBar>
#include <QTest>

#include "history_panel_support.h"
#include "ui/history/history_row.h"
#include "ui/kit/badge.h"
#include "ui/kit/button.h"
#include "ui/kit/focus_order.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/scroll_panel.h"
#include "ui/kit/stack.h"
#include "widget_support.h"

namespace tralio {
namespace {

class HistoryViewTest : public HistoryPanel {
protected:
    /// Shows the panel with these entries, the first one at the top.
    void show(QStringList texts) {
        std::ranges::reverse(texts);
        for (const QString& text : texts)
            add(text);
        view = new HistoryView(*panel);
        filled(&window, column({}, {view}));
        window.resize(530, 300);
        showActive(window);
    }

    /// The rows as the user sees them, from the top.
    QList<HistoryRow*> rows() const {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QList<HistoryRow*> list = visibleParts<HistoryRow>(*view);
        std::ranges::sort(list, {}, &QWidget::y);
        return list;
    }
    QStringList shown() const {
        QStringList texts;
        for (const HistoryRow* row : rows())
            texts += row->item().sourceText;
        return texts;
    }

    static QPoint middle(const QWidget* widget) {
        return widget->mapTo(widget->window(), widget->rect().center());
    }
    /// Presses and releases the left button where the widget is, on whatever is there.
    void clickAt(const QWidget* widget) {
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, middle(widget));
        ASSERT_TRUE(nextTurn());
    }
    void press(Qt::Key key) {
        QTest::keyClick(window.windowHandle(), key);
        ASSERT_TRUE(nextTurn());
    }
    QScrollBar* scrollBar() const { return view->findChild<ScrollPanel*>()->verticalScrollBar(); }
    bool showsEmptyState() const { return view->findChild<IconView*>()->isVisible(); }

    /// The keyboard goes through it as through the whole window.
    class Window final : public QWidget {
        bool focusNextPrevChild(bool next) override { return moveFocus(*this, next); }
    };

    Window window;
    HistoryView* view = nullptr;
};

TEST_F(HistoryViewTest, a_click_anywhere_on_a_row_picks_it_but_not_one_on_its_buttons_or_let_go_elsewhere) {
    show({u"one"_s, u"two"_s});
    HistoryRow* row = rows()[1];
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, middle(rows()[0]));
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, middle(row));
    EXPECT_TRUE(picked.isEmpty());
    clickAt(row);
    for (const QWidget* part : row->findChildren<Label*>())
        clickAt(part);
    EXPECT_EQ(picked, QStringList(5, u"two"_s));

    clickAt(visibleControl(*row, u"Sao chép"_s));
    EXPECT_EQ(desktop.pasteboard.content, u"TWO"_s);
    EXPECT_EQ(visibleControls(*view, u"Đã chép!"_s), QList{visibleControl(*row, u"Đã chép!"_s)});
    desktop.clock.advance(1500ms);
    ASSERT_TRUE(nextTurn());
    EXPECT_NE(visibleControl(*row, u"Sao chép"_s), nullptr);
    clickAt(visibleControl(*row, u"Xóa"_s));
    EXPECT_EQ(shown(), QStringList(u"one"_s));
    EXPECT_EQ(picked.size(), 5) << "a button of the row picked it too";
}

TEST_F(HistoryViewTest, the_keyboard_reaches_picks_and_removes_rows) {
    show({u"one"_s, u"two"_s, u"three"_s});
    const QList<HistoryRow*> list = rows();
    visibleControl(*view, u"Xóa tất cả"_s)->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Tab);
    EXPECT_TRUE(list[0]->hasFocus());
    press(Qt::Key_Return);
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    EXPECT_EQ(desktop.pasteboard.content, u"ONE"_s);
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    EXPECT_TRUE(list[1]->hasFocus());
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_TRUE(list[2]->hasFocus());
    press(Qt::Key_Up);
    press(Qt::Key_Space);
    EXPECT_EQ(picked, (QStringList{u"one"_s, u"two"_s}));

    // The focus stays at its place in the list, and at the end on the last row.
    press(Qt::Key_Delete);
    EXPECT_EQ(shown(), (QStringList{u"one"_s, u"three"_s}));
    EXPECT_TRUE(list[2]->hasFocus());
    EXPECT_TRUE(list[2]->showsFocusRing());
    press(Qt::Key_Backtab);
    EXPECT_TRUE(visibleControl(*list[0], u"Xóa"_s)->hasFocus());
    press(Qt::Key_Space);
    EXPECT_TRUE(list[2]->hasFocus());
    press(Qt::Key_Delete);
    EXPECT_TRUE(showsEmptyState());
}

TEST_F(HistoryViewTest, a_row_is_spoken_with_its_texts_and_languages) {
    show({u"Hello there"_s});
    const QString name = QAccessible::queryAccessibleInterface(rows()[0])->text(QAccessible::Name);
    for (const QString& part : {u"Hello there"_s, u"HELLO THERE"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s})
        EXPECT_TRUE(name.contains(part)) << name.toStdString();
    EXPECT_EQ(visibleParts<Badge>(*view).value(0)->accessibleName(), u"TIẾNG ANH ➔ TIẾNG VIỆT"_s);
}

TEST_F(HistoryViewTest, what_was_today_is_shown_with_its_day_when_the_panel_comes_back_on_another) {
    show({u"one"_s});
    EXPECT_TRUE(textsIn(*view).contains(u"12:00"_s));
    window.hide();
    now = now.addDays(1);
    window.show();
    EXPECT_TRUE(textsIn(*view).contains(u"25/11 12:00"_s));
}

TEST_F(HistoryViewTest, the_keyboard_takes_back_what_it_removed) {
    show({u"one"_s, u"two"_s});
    rows()[0]->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Delete);
    press(Qt::Key_Delete);
    ASSERT_TRUE(showsEmptyState());
    QTest::keyClick(window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(nextTurn());
    EXPECT_EQ(shown(), QStringList(u"two"_s));
    EXPECT_TRUE(rows()[0]->hasFocus());
}

TEST_F(HistoryViewTest, removing_all_shows_the_empty_state_and_an_entry_ends_it) {
    show({u"one"_s, u"two"_s});
    const Control* clear = visibleControl(*view, u"Xóa tất cả"_s);
    EXPECT_FALSE(showsEmptyState());
    clickAt(clear);
    EXPECT_TRUE(showsEmptyState());
    EXPECT_FALSE(clear->isVisible());
    EXPECT_TRUE(rows().isEmpty());
    EXPECT_EQ(view->findChild<Label*>()->text(), u"Lịch sử bản dịch (0)"_s);

    add(u"three"_s);
    ASSERT_TRUE(nextTurn());
    EXPECT_FALSE(showsEmptyState());
    EXPECT_TRUE(clear->isVisible());
    EXPECT_EQ(shown(), QStringList(u"three"_s));
}

TEST_F(HistoryViewTest, a_change_leaves_the_other_rows_the_scrolling_the_focus_and_the_hover_alone) {
    QStringList texts;
    for (int i = 0; i < 40; ++i)
        texts += QString::number(i);
    show(texts);
    QList<HistoryRow*> before = rows();
    before[20]->setFocus(Qt::TabFocusReason);
    scrollBar()->setValue(before[20]->y());
    const int scrolled = scrollBar()->value();
    QTest::mouseMove(window.windowHandle(), middle(before[21]));
    const QImage hovered = pictureOf(*before[21]);

    panel->remove(before.takeAt(30)->item());
    panel->copyToClipboard(before[22]->item());
    ASSERT_TRUE(nextTurn());
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(scrollBar()->value(), scrolled);
    EXPECT_TRUE(before[20]->hasFocus());
    EXPECT_EQ(difference(pictureOf(*before[21]), hovered), QRect());
    QTest::mouseMove(window.windowHandle(), middle(before[22]));
    EXPECT_TRUE(
        eventually([&] { return difference(pictureOf(*before[21]), hovered) == before[21]->rect(); }));
}

TEST_F(HistoryViewTest, the_keyboard_brings_rows_into_sight) {
    show({u"0"_s, u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s});
    rows()[0]->setFocus(Qt::TabFocusReason);
    for (int i = 0; i < 5; ++i)
        press(Qt::Key_Down);
    EXPECT_TRUE(rows()[5]->hasFocus());
    EXPECT_EQ(scrollBar()->value(), scrollBar()->maximum());
}

TEST_F(HistoryViewTest, a_long_text_takes_two_lines_and_its_translation_three) {
    show({u"short"_s, u"word "_s.repeated(4000), u"1\n2\n3\n4\n5"_s, u"w"_s.repeated(20000)});
    for (const HistoryRow* row : rows().mid(1))
        EXPECT_EQ(row->height(), rows()[0]->height() + 3 * text::caption.line);
    for (const HistoryRow* row : rows())
        EXPECT_EQ(row->width(), 530 - 2 * 14);
}

}  // namespace
}  // namespace tralio
