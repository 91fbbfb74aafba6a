#include <QAbstractButton>
#include <QDrag>
#include <QScrollArea>
#include <QScrollBar>

#include "ui/history/history_row.h"
#include "ui/kit/prompt_editor.h"
#include "ui/kit/scroll_panel.h"
#include "ui/stage_test.h"

namespace tralio {
namespace {

/// Two presses at one place, as quick as those of a double click.
struct DoubleClick : StageTest {
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

/// Where the keyboard is after what it was in has gone, and what the next key then does.
using KeyboardPlace = StageTest;

TEST_F(KeyboardPlace, a_panel_out_of_which_a_text_is_dragged_stays_until_the_drag_is_over) {
    open();
    click(u"Cài đặt"_s);
    QPointer<PromptEditor> editor = find<PromptEditor>();
    auto* drag = new QDrag(editor);
    appState.notifyPopoverOpened();
    settle();
    EXPECT_TRUE(isOnTab(u"Tralio"_s));
    ASSERT_FALSE(editor.isNull()) << "its event handler still runs";
    EXPECT_FALSE(editor->isVisible());
    delete drag;
    wait([&] { return editor.isNull(); });

    click(u"Cài đặt"_s);
    editor = find<PromptEditor>();
    drag = new QDrag(editor);
    click(u"Tralio"_s);
    close();
    EXPECT_TRUE(editor.isNull()) << "it would outlive what it shows";
}

TEST_F(KeyboardPlace, fields_that_leave_with_the_keyboard_leave_it_where_no_key_does_harm) {
    useOwnEndpoint();
    open();
    click(u"Cài đặt"_s);
    field(u"Tên Model"_s)->setFocus(Qt::MouseFocusReason);
    click(u"Khôi phục mặc định"_s);
    EXPECT_EQ(field(u"Tên Model"_s), nullptr);
    press(Qt::Key_Space);
    press(Qt::Key_Return);
    EXPECT_FALSE(store.boolean(u"app_setting_auto_paste"_s).has_value());
    EXPECT_FALSE(hasControl(u"Đang kiểm tra..."_s));
    press(Qt::Key_Tab);
    EXPECT_FALSE(focusedTitle().isEmpty()) << "Tab goes on from there";

    focus(u"Kiểm tra kết nối"_s);
    pressUndo();
    ASSERT_NE(field(u"Tên Model"_s), nullptr);
    press(Qt::Key_Space);
    EXPECT_THAT(texts().filter(u"chưa được gửi đi"_s), IsEmpty());
}

TEST_F(KeyboardPlace, of_a_button_that_leaves_with_what_it_stands_in_is_no_other_that_does_things) {
    useOwnEndpoint();
    open();
    type(u"text"_s);
    press(Qt::Key_Return);  // refused: the key would be exposed
    ASSERT_TRUE(showsError());
    focus(u"Đóng thông báo lỗi"_s);
    press(Qt::Key_Space);
    press(Qt::Key_Space);
    EXPECT_FALSE(showsError());

    click(u"Cài đặt"_s);
    focus(u"Vẫn gửi"_s);
    press(Qt::Key_Space);
    press(Qt::Key_Space);
    EXPECT_TRUE(model.requests().isEmpty());
    click(u"Tralio"_s);
    press(Qt::Key_Return);
    wait([this] { return result() == u"TEXT"_s; });
    desktop.pasteboard.setString(u"elsewhere"_s);
    focus(u"Sao chép"_s);
    click(u"Xóa"_s);
    press(Qt::Key_Space);
    EXPECT_EQ(input(), QString());
    EXPECT_EQ(model.requests().size(), 1);
}

TEST_F(KeyboardPlace, is_the_new_panels_where_a_menu_was_open_over_the_old_one) {
    useOwnEndpoint();
    open();
    const auto openPicker = [this] { QTest::mouseClick(find<MenuButton>(), Qt::LeftButton); };
    const auto openEditMenu = [this] {
        QContextMenuEvent ask(QContextMenuEvent::Mouse, QPoint(5, 5), QPoint());
        QApplication::sendEvent(field(u"Tên Model"_s), &ask);
    };
    for (const std::function<void()>& openMenu : {std::function(openPicker), std::function(openEditMenu)}) {
        click(u"Cài đặt"_s);
        openMenu();
        ASSERT_NE(find<PopupMenu>(), nullptr);
        appState.notifyPopoverOpened();
        settle();
        EXPECT_TRUE(isOnTab(u"Tralio"_s));
        find<MultilineEnterInputView>()->clear();
        type(u"text"_s);
        EXPECT_EQ(input(), u"text"_s);
    }
}

TEST_F(KeyboardPlace, the_page_keys_scroll_a_panel_that_was_opened_by_the_mouse) {
    open();
    for (const QString& tab : {u"Cài đặt"_s, u"Tác giả"_s}) {
        click(tab);
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        EXPECT_FALSE(qobject_cast<Control*>(QApplication::focusWidget()));
    }
    click(u"Cài đặt"_s);
    press(Qt::Key_PageDown);
    EXPECT_GT(find<ScrollPanel>()->verticalScrollBar()->value(), 100);
    press(Qt::Key_PageUp);
    EXPECT_EQ(find<ScrollPanel>()->verticalScrollBar()->value(), 0);
}

TEST_F(KeyboardPlace, is_seen_wherever_it_is) {
    desktop.permissions.accessibility = false;
    fillHistory({u"good night"_s});
    open();
    // The pixels around it and on its edge that the keyboard changes.
    const auto changesAtEdge = [this](QWidget& place) {
        const QRect outer = QRect(place.mapTo(&window(), QPoint()), place.size()).adjusted(-8, -8, 8, 8);
        const QImage before = pictureOf(window());
        place.setFocus(Qt::TabFocusReason);
        const QImage after = pictureOf(window());
        place.clearFocus();
        int changes = 0;
        for (int y = outer.top(); y <= outer.bottom(); ++y)
            for (int x = outer.left(); x <= outer.right(); ++x)
                changes += before.valid(x, y) && !outer.adjusted(11, 11, -11, -11).contains(x, y) &&
                    before.pixel(x, y) != after.pixel(x, y);
        return changes;
    };
    press(Qt::Key_Shift);
    for (const QString& tab : {u"Tralio"_s, u"Lịch sử"_s, u"Cài đặt"_s, u"Tác giả"_s}) {
        click(tab);
        press(Qt::Key_Shift);
        for (QWidget* place : visibleParts<QWidget>(window())) {
            if (!(place->focusPolicy() & Qt::TabFocus) || !place->isEnabled() ||
                qobject_cast<QScrollArea*>(place) || place == find<MultilineEnterInputView>())
                continue;
            for (QWidget* area = place; area != nullptr; area = area->parentWidget())
                if (auto* scrolled = qobject_cast<QScrollArea*>(area))
                    scrolled->ensureWidgetVisible(place);
            EXPECT_GT(changesAtEdge(*place), 2 * place->width())
                << "less than a ring of two pixels: " << qPrintable(tab) << ", "
                << qPrintable(spokenName(*place));
        }
    }
}

}  // namespace
}  // namespace tralio
