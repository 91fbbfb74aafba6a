#include <QAbstractButton>

#include <algorithm>

#include "ui/history/history_row.h"
#include "ui/stage_test.h"

namespace tralio {
namespace {

/// Two presses at one place, as quick as those of a double click.
class DoubleClick : public StageTest {
protected:
    /// How often the button that lies there now is pressed by what follows.
    void countPressesAt(const QPoint& place) {
        auto* button = qobject_cast<QAbstractButton*>(window().childAt(place));
        ASSERT_TRUE(button) << "nothing to hit";
        QObject::connect(button, &QAbstractButton::pressed, button, [this] { ++presses; });
    }
    /// The middles of all buttons that are there.
    QList<QPoint> buttonPlaces() {
        QList<QPoint> places;
        for (const auto* button : visibleParts<QAbstractButton>(window()))
            places += middle(button);
        return places;
    }

    int presses = 0;
};

TEST_F(DoubleClick, on_skip_does_not_reach_what_lay_beneath_but_a_later_or_another_press_does) {
    store.setValue(u"hasCompletedOnboarding"_s, false);
    open();
    EXPECT_FALSE(hasControl(u"Cài đặt"_s)) << "it lies over everything";
    const QPoint place = middle(controls(u"Bỏ qua"_s).constFirst());
    clickAt(place);
    EXPECT_FALSE(hasControl(u"Bỏ qua"_s));
    EXPECT_TRUE(isOnTab(u"Tralio"_s));
    EXPECT_EQ(store.boolean(u"hasCompletedOnboarding"_s), true) << "ended for good";
    countPressesAt(place);
    clickAt(place);
    clickAt(place + QPoint(2, 1));
    EXPECT_EQ(presses, 0);

    clickAt(middle(controls(u"Lịch sử"_s).constFirst()));
    EXPECT_TRUE(isOnTab(u"Lịch sử"_s)) << "elsewhere one may press at once";
    desktop.clock.advance(std::chrono::milliseconds(QApplication::doubleClickInterval()));
    clickAt(place);
    EXPECT_EQ(presses, 1);
}

TEST_F(DoubleClick, on_an_entry_of_the_history_leaves_the_panel_that_it_opens_alone) {
    fillHistory(u"a b c d e f g h"_s.split(u' '));
    open();
    const QList<QPoint> buttons = buttonPlaces();
    click(u"Lịch sử"_s);
    const auto rowAt = [this](const QPoint& place) {
        QWidget* widget = window().childAt(place);
        while (widget && !qobject_cast<HistoryRow*>(widget) && !qobject_cast<QAbstractButton*>(widget))
            widget = widget->parentWidget();
        return qobject_cast<HistoryRow*>(widget);
    };
    const auto place = std::find_if(buttons.cbegin(), buttons.cend(), rowAt);
    ASSERT_NE(place, buttons.cend()) << "no row where the other panel has a button";

    clickAt(*place);
    wait([this] { return isOnTab(u"Tralio"_s); });
    countPressesAt(*place);
    clickAt(*place);
    EXPECT_EQ(presses, 0);
}

TEST_F(DoubleClick, on_an_entry_of_a_menu_chooses_it_and_presses_nothing_beneath) {
    open();
    type(u"text"_s);
    const QList<QPoint> buttons = buttonPlaces();
    click(u"Ngôn ngữ nguồn: Tiếng Anh"_s);
    const auto items = controls(u"Tiếng Pháp"_s);
    ASSERT_THAT(items, SizeIs(1));
    const QRect item(items[0]->mapTo(&window(), QPoint()), items[0]->size());
    const auto beneath = std::find_if(buttons.cbegin(), buttons.cend(),
        [&](const QPoint& button) { return item.contains(QPoint(item.center().x(), button.y())); });
    ASSERT_NE(beneath, buttons.cend()) << "no button under the entry";
    const QPoint place(item.center().x(), beneath->y());
    clickAt(place);
    EXPECT_TRUE(hasControl(u"Ngôn ngữ nguồn: Tiếng Pháp"_s));
    countPressesAt(place);
    for (int more = 0; more < 2; ++more) {
        desktop.clock.advance(std::chrono::milliseconds(QApplication::doubleClickInterval() / 2));
        clickAt(place);
    }
    EXPECT_EQ(presses, 0) << "nor by a third, as quick as the second";
}

}  // namespace
}  // namespace tralio
