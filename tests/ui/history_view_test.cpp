#include "ui/history/history_view.h"

#include <QLocale>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTimeZone>

#include <ctime>

#include "history/translation_history_store.h"
#include "support/event_loop.h"
#include "support/fake_desktop.h"
#include "support/memory_key_value_store.h"
#include "ui/history/history_row.h"
#include "ui/history/history_state.h"
#include "ui/kit/badge.h"
#include "ui/kit/button.h"
#include "ui/kit/focus_order.h"
#include "ui/kit/icon_view.h"
#include "ui/kit/label.h"
#include "ui/kit/scroll_panel.h"
#include "ui/kit/stack.h"
#include "ui/undo/undo_offer.h"
#include "widget_support.h"

namespace tralio {
namespace {

/// The history panel in the hands of a test. It is noon of a day in the time zone of the desktop.
class HistoryPanel : public testing::Test {
protected:
    static std::chrono::system_clock::time_point at(const QDateTime& time) {
        return std::chrono::system_clock::time_point(std::chrono::milliseconds(time.toMSecsSinceEpoch()));
    }
    /// Adds an entry whose translation is the text in capitals.
    void add(const QString& text) {
        history.add(text, text.toUpper(), u"Tiếng Anh"_s, u"Tiếng Việt"_s, u"Tự nhiên"_s);
    }
    /// Shows the panel with these entries, the first one at the top.
    void show(QStringList texts) {
        std::ranges::reverse(texts);
        for (const QString& text : texts)
            add(text);
        view = new HistoryView(panel);
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

    QDateTime now{QDate(2026, 11, 25), QTime(12, 0)};
    FakeDesktop desktop;
    MemoryKeyValueStore store;
    TranslationHistoryStore history{store, [this] { return at(now); }};
    UndoOffer undo{desktop.clock};
    QStringList picked;  ///< source texts
    std::weak_ptr<HistoryRemovals> removals;
    HistoryState panel{
        {history, desktop.pasteboard, undo, removals, desktop.clock, [this] { return at(now); }},
        [this](const TranslationItem& item) { picked += item.sourceText; }};
    Window window;
    HistoryView* view = nullptr;
};

TEST_F(HistoryPanel, a_click_anywhere_on_a_row_picks_it_but_not_one_on_its_buttons_or_let_go_elsewhere) {
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
    desktop.clock.advance(1s);
    QSignalSpy changes(&panel, &ObservableObject::objectWillChange);
    clickAt(visibleControl(*rows()[0], u"Sao chép"_s));
    desktop.clock.advance(1499ms);
    ASSERT_TRUE(nextTurn());
    EXPECT_EQ(visibleControls(*view, u"Đã chép!"_s), QList{visibleControl(*rows()[0], u"Đã chép!"_s)})
        << "taken away with the mark of the first";
    desktop.clock.advance(1ms);
    ASSERT_TRUE(nextTurn());
    EXPECT_TRUE(visibleControls(*view, u"Đã chép!"_s).isEmpty());
    EXPECT_EQ(changes.size(), 2);
    clickAt(visibleControl(*row, u"Xóa"_s));
    EXPECT_EQ(shown(), QStringList(u"one"_s));
    EXPECT_EQ(picked.size(), 5) << "a button of the row picked it too";
}

TEST_F(HistoryPanel, the_keyboard_reaches_picks_and_removes_rows) {
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
    EXPECT_TRUE(visibleControl(*list[2], u"Xóa"_s)->hasFocus()) << "and on the same button";
    press(Qt::Key_Space);
    EXPECT_TRUE(showsEmptyState());
}

TEST_F(HistoryPanel, a_row_is_spoken_with_its_texts_and_languages) {
    show({u"Hello there"_s});
    const QString name = spokenName(*rows()[0]);
    for (const QString& part : {u"Hello there"_s, u"HELLO THERE"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s})
        EXPECT_TRUE(name.contains(part)) << name.toStdString();
    EXPECT_EQ(visibleParts<Badge>(*view).value(0)->accessibleName(), u"TIẾNG ANH ➔ TIẾNG VIỆT"_s);
}

TEST_F(HistoryPanel, a_time_shows_its_day_unless_that_is_today_where_the_user_is) {
    const QLocale before;
    QLocale::setDefault(QLocale::c());
    const auto moveTo = [](const QByteArray& zone) {
        zone.isNull() ? qunsetenv("TZ") : qputenv("TZ", zone);
        tzset();
    };
    const QByteArray here = qgetenv("TZ");
    moveTo("ICT-7");  // which no list of zones has to know
    const auto utc = [](const QDate& day, const QTime& time) {
        return QDateTime(day, time, QTimeZone::utc());
    };
    now = utc({2026, 11, 24}, {18, 0});  // one o'clock of the 25th
    EXPECT_EQ(panel.formatDate(utc({2026, 11, 24}, {17, 0, 0})), u"00:00"_s);
    EXPECT_EQ(panel.formatDate(utc({2026, 11, 25}, {16, 59, 59})), u"23:59"_s);
    EXPECT_EQ(panel.formatDate(utc({2026, 11, 24}, {16, 59, 59})), u"24/11 23:59"_s);
    EXPECT_EQ(panel.formatDate(utc({2025, 12, 31}, {16, 59})), u"31/12 23:59"_s);
    EXPECT_EQ(panel.formatDate(utc({2025, 11, 25}, {2, 5})), u"25/11 09:05"_s);
    EXPECT_EQ(panel.formatDate(utc({2026, 11, 25}, {17, 0})), u"26/11 00:00"_s);
    TranslationItem beyondAllTime;
    beyondAllTime.timestamp = 1e300;
    EXPECT_EQ(panel.formatDate(beyondAllTime.date()), QString());

    moveTo("GMT0");
    EXPECT_EQ(panel.formatDate(utc({2026, 11, 24}, {16, 59})), u"16:59"_s);
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    EXPECT_EQ(panel.formatDate(utc({2026, 11, 24}, {16, 59})), u"١٦:٥٩"_s);
    QLocale::setDefault(before);
    moveTo(here);
}

TEST_F(HistoryPanel, what_was_today_is_shown_with_its_day_when_the_panel_comes_back_on_another) {
    show({u"one"_s});
    EXPECT_TRUE(textsIn(*view).contains(u"12:00"_s));
    window.hide();
    now = now.addDays(1);
    window.show();
    EXPECT_TRUE(textsIn(*view).contains(u"25/11 12:00"_s));
}

TEST_F(HistoryPanel, without_entries_it_says_so_until_one_is_added_or_taken_back) {
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

    rows()[0]->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Delete);
    ASSERT_TRUE(showsEmptyState());
    undo.accept();
    ASSERT_TRUE(nextTurn());
    EXPECT_EQ(shown(), (QStringList{u"three"_s, u"one"_s, u"two"_s})) << "all that went meanwhile";
    EXPECT_TRUE(rows()[0]->hasFocus());
}

TEST_F(HistoryPanel, a_change_leaves_the_other_rows_the_scrolling_the_focus_and_the_hover_alone) {
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

    panel.remove(before.takeAt(30)->item());
    panel.copyToClipboard(before[22]->item());
    ASSERT_TRUE(nextTurn());
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(scrollBar()->value(), scrolled);
    EXPECT_TRUE(before[20]->hasFocus());
    EXPECT_EQ(difference(pictureOf(*before[21]), hovered), QRect());

    const int onScreen = before[20]->y() - scrolled;
    add(u"new"_s);
    ASSERT_TRUE(nextTurn());
    EXPECT_GT(scrollBar()->value(), scrolled) << "what comes above";
    EXPECT_EQ(before[20]->y() - scrollBar()->value(), onScreen) << "moves nothing";
    QTest::mouseMove(window.windowHandle(), middle(before[22]));
    EXPECT_TRUE(
        eventually([&] { return difference(pictureOf(*before[21]), hovered) == before[21]->rect(); }));

    for (int row = 20; row < 38; ++row)
        press(Qt::Key_Down);
    EXPECT_TRUE(before.last()->hasFocus());
    EXPECT_EQ(scrollBar()->value(), scrollBar()->maximum()) << "the keyboard brings rows into sight";
}

TEST_F(HistoryPanel, a_long_text_takes_two_lines_and_its_translation_three) {
    show({u"short"_s, u"word "_s.repeated(4000), u"1\n2\n3\n4\n5"_s, u"w"_s.repeated(20000)});
    for (const HistoryRow* row : rows().mid(1))
        EXPECT_EQ(row->height(), rows()[0]->height() + 3 * text::caption.line);
    for (const HistoryRow* row : rows())
        EXPECT_EQ(row->width(), 530 - 2 * 14);
}

}  // namespace
}  // namespace tralio
