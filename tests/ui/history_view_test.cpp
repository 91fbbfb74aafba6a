#include "ui/history/history_view.h"

#include <ctime>

#include "ui/history/history_row.h"
#include "ui/history/history_state.h"
#include "ui/kit/badge.h"
#include "ui/stage_test.h"
#include "ui/undo/undo_offer.h"

namespace tralio {
namespace {

struct HistoryPanel : StageTest {
    /// The rows as the user sees them, from the top.
    [[nodiscard]] QList<HistoryRow*> rows() const {
        QList<HistoryRow*> list = visibleParts<HistoryRow>(window());
        std::ranges::sort(list, {}, &QWidget::y);
        return list;
    }
    [[nodiscard]] QStringList shown() const {
        QStringList texts;
        for (const HistoryRow* row : rows())
            texts += row->item().sourceText;
        return texts;
    }
    [[nodiscard]] QScrollBar* scrollBar() const { return find<ScrollPanel>()->verticalScrollBar(); }
};

TEST_F(HistoryPanel, a_click_anywhere_on_a_row_picks_it_but_not_one_on_its_buttons_or_let_go_elsewhere) {
    fillHistory({u"one"_s, u"two"_s});
    open();
    type(u"a draft"_s);
    click(u"Lịch sử"_s);
    const QString name = spokenName(*rows()[1]);
    for (const QString& part : {u"two"_s, u"TWO"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s})
        EXPECT_TRUE(name.contains(part)) << name.toStdString();
    EXPECT_EQ(rows()[1]->findChild<Badge*>()->accessibleName(), u"TIẾNG ANH ➔ TIẾNG VIỆT"_s);

    QTest::mousePress(window().windowHandle(), Qt::LeftButton, {}, middle(rows()[0]));
    QTest::mouseRelease(window().windowHandle(), Qt::LeftButton, {}, middle(rows()[1]));
    settle();
    EXPECT_TRUE(isOnTab(u"Lịch sử"_s));
    const std::stop_source reading;
    appState.beginReading(reading);
    for (int part = -1; part < 4; ++part) {
        const HistoryRow* row = rows()[1];
        clickAt(middle(part < 0 ? row : static_cast<const QWidget*>(row->findChildren<Label*>()[part])));
        pass(1s);
        EXPECT_EQ(input(), u"two"_s) << "part " << part;
        EXPECT_TRUE(reading.stop_requested()) << "of an older picture, which would replace it";
        EXPECT_FALSE(hasControl(u"Đang dịch bằng AI..."_s)) << "it fills the input without being translated";
        pressUndo();
        EXPECT_EQ(input(), u"a draft"_s);
        click(u"Lịch sử"_s);
    }

    const QString copied = u"Đã chép!"_s;
    const auto clickIn = [this](int row, const QString& button) {
        clickAt(middle(visibleControl(*rows()[row], button)));
    };
    clickIn(1, u"Sao chép"_s);
    EXPECT_EQ(desktop.pasteboard.content, u"TWO"_s);
    EXPECT_EQ(controls(copied), QList{visibleControl(*rows()[1], copied)});
    pass(1s);
    clickIn(0, u"Sao chép"_s);
    pass(1499ms);
    EXPECT_EQ(controls(copied), QList{visibleControl(*rows()[0], copied)}) << "with the first one's mark";
    pass(1ms);
    EXPECT_THAT(controls(copied), IsEmpty());
    clickIn(1, u"Xóa"_s);
    EXPECT_THAT(shown(), ElementsAre(u"one"_s));
    EXPECT_TRUE(isOnTab(u"Lịch sử"_s)) << "a button of the row picked it too";
}

TEST_F(HistoryPanel, the_keyboard_reaches_picks_and_removes_rows) {
    fillHistory({u"one"_s, u"two"_s, u"three"_s});
    openAt(u"Lịch sử"_s);
    focus(u"Lịch sử"_s, Qt::Key_Right, Qt::Key_Left);
    ASSERT_TRUE(isOnTab(u"Lịch sử"_s));
    clickAt(middle(rows()[0]));
    EXPECT_TRUE(focusedTitle().isEmpty()) << "the input has it, and not the tab that was left";
    click(u"Lịch sử"_s);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) {
        rows()[1]->setFocus(Qt::TabFocusReason);
        press(key);
        EXPECT_EQ(input(), u"two"_s);
        click(u"Xóa"_s, u"Lịch sử"_s);
    }
    const QList<HistoryRow*> list = rows();
    focus(u"Xóa tất cả"_s, Qt::Key_Tab);
    EXPECT_TRUE(list[0]->hasFocus());
    press(Qt::Key_Tab, Qt::Key_Return);
    EXPECT_EQ(desktop.pasteboard.content, u"ONE"_s);
    press(Qt::Key_Tab, Qt::Key_Tab);
    EXPECT_TRUE(list[1]->hasFocus());
    press(Qt::Key_Down, Qt::Key_Down);
    EXPECT_TRUE(list[2]->hasFocus());

    // The focus stays at its place in the list, and at the end on the last row.
    press(Qt::Key_Up, Qt::Key_Delete);
    EXPECT_THAT(shown(), ElementsAre(u"one"_s, u"three"_s));
    EXPECT_TRUE(list[2]->hasFocus());
    EXPECT_TRUE(list[2]->showsFocusRing());
    press(Qt::Key_Backtab);
    EXPECT_TRUE(visibleControl(*list[0], u"Xóa"_s)->hasFocus());
    press(Qt::Key_Space);
    EXPECT_TRUE(visibleControl(*list[2], u"Xóa"_s)->hasFocus()) << "and on the same button";
    press(Qt::Key_Space);
    const QString emptyState = u"Chưa có lịch sử dịch"_s;
    EXPECT_THAT(texts(), testing::IsSupersetOf({emptyState, u"Lịch sử bản dịch (0)"_s}));
    EXPECT_FALSE(hasControl(u"Xóa tất cả"_s));
    EXPECT_THAT(shown(), IsEmpty());
    pressUndo();
    EXPECT_THAT(texts(), testing::Not(Contains(emptyState)));
    EXPECT_TRUE(hasControl(u"Xóa tất cả"_s));
    EXPECT_THAT(shown(), ElementsAre(u"one"_s, u"two"_s, u"three"_s)) << "all that went meanwhile";
    EXPECT_TRUE(rows()[0]->hasFocus());
}

TEST_F(HistoryPanel, a_time_shows_its_day_unless_that_is_today_where_the_user_is) {
    // One o'clock of the 25th there.
    std::chrono::system_clock::time_point now = std::chrono::sys_days(2026y / 11 / 24) + 18h;
    const auto time = [&now] { return now; };
    TranslationHistoryStore history(store, time);
    UndoOffer undo(desktop.clock);
    std::weak_ptr<HistoryRemovals> removals;
    HistoryState panel({history, desktop.pasteboard, undo, removals, desktop.clock, time}, {});
    const QLocale before;
    QLocale::setDefault(QLocale::c());
    const QByteArray here = qgetenv("TZ");
    qputenv("TZ", "ICT-7");  // which no list of zones has to know
    tzset();
    const auto expect = [&panel](const QDate& day, const QTime& at, const QString& text) {
        EXPECT_EQ(panel.formatDate(QDateTime(day, at, QTimeZone::utc())), text);
    };
    expect({2026, 11, 24}, {17, 0, 0}, u"00:00"_s);
    expect({2026, 11, 25}, {16, 59, 59}, u"23:59"_s);
    expect({2026, 11, 24}, {16, 59, 59}, u"24/11 23:59"_s);
    expect({2025, 11, 25}, {2, 5}, u"25/11 09:05"_s);
    expect({2026, 11, 25}, {17, 0}, u"26/11 00:00"_s);
    TranslationItem beyondAllTime;
    beyondAllTime.timestamp = 1e300;
    EXPECT_EQ(panel.formatDate(beyondAllTime.date()), QString());

    history.add(u"text"_s, u"TEXT"_s, {}, {}, {});
    HistoryView view(panel);
    view.show();
    EXPECT_THAT(textsIn(view), Contains(u"01:00"_s));
    view.hide();
    now += 24h;
    view.show();
    EXPECT_THAT(textsIn(view), Contains(u"25/11 01:00"_s)) << "when it comes back on another day";
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    expect({2026, 11, 26}, {9, 59}, u"١٦:٥٩"_s);
    QLocale::setDefault(before);
    here.isNull() ? qunsetenv("TZ") : qputenv("TZ", here);
    tzset();
}

TEST_F(HistoryPanel, a_change_leaves_the_other_rows_the_scrolling_the_focus_and_the_hover_alone) {
    for (int row = 40; row > 0; --row)
        fillHistory({QString::number(row)});
    open();
    holdReplies();
    type(u"new"_s);
    press(Qt::Key_Return);
    waitForRequests(1);
    click(u"Lịch sử"_s);
    QList<HistoryRow*> before = rows();
    before[20]->setFocus(Qt::TabFocusReason);
    scrollBar()->setValue(before[20]->y());
    const int scrolled = scrollBar()->value();
    QTest::mouseMove(window().windowHandle(), middle(before[21]));
    const QImage hovered = pictureOf(*before[21]);

    visibleControl(*before.takeAt(30), u"Xóa"_s)->click();
    visibleControl(*before[22], u"Sao chép"_s)->click();
    settle();
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(scrollBar()->value(), scrolled);
    EXPECT_TRUE(before[20]->hasFocus());
    EXPECT_EQ(difference(pictureOf(*before[21]), hovered), QRect());

    const int onScreen = before[20]->y() - scrolled;
    model.sendTheRest();
    wait([&] { return rows().size() > before.size(); });
    EXPECT_GT(scrollBar()->value(), scrolled) << "what comes above";
    EXPECT_EQ(before[20]->y() - scrollBar()->value(), onScreen) << "moves nothing";
    QTest::mouseMove(window().windowHandle(), middle(before[22]));
    wait([&] { return difference(pictureOf(*before[21]), hovered) == before[21]->rect(); });

    for (int row = 20; row < 38; ++row)
        press(Qt::Key_Down);
    EXPECT_TRUE(before.last()->hasFocus());
    EXPECT_EQ(scrollBar()->value(), scrollBar()->maximum()) << "the keyboard brings rows into sight";
}

TEST_F(HistoryPanel, a_long_text_takes_two_lines_and_its_translation_three) {
    fillHistory({u"short"_s, u"word "_s.repeated(4000), u"1\n2\n3\n4\n5"_s, u"w"_s.repeated(20000)});
    openAt(u"Lịch sử"_s);
    for (const HistoryRow* row : rows().mid(1))
        EXPECT_EQ(row->height(), rows()[0]->height() + 3 * text::caption.line);
    for (HistoryRow* row : rows()) {
        EXPECT_EQ(row->width(), 530 - 2 * 14);
        EXPECT_NE(pictureOf(*row).pixelColor(0, 30), pictureOf(*row).pixelColor(3, 30)) << "no edge";
    }
}

}  // namespace
}  // namespace tralio
