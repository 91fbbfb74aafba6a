#include <QDrag>
#include <QScrollBar>

#include "ui/kit/prompt_editor.h"
#include "ui/kit/scroll_panel.h"
#include "ui/stage_test.h"

namespace tralio {
namespace {

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
    EXPECT_TRUE(model.requests().isEmpty());
    press(Qt::Key_Tab);
    EXPECT_FALSE(focusedTitle().isEmpty()) << "Tab goes on from there";

    focus(u"Kiểm tra kết nối"_s);
    pressUndo();
    ASSERT_NE(field(u"Tên Model"_s), nullptr);
    press(Qt::Key_Space);
    EXPECT_TRUE(model.requests().isEmpty());
}

TEST_F(KeyboardPlace,
    a_button_that_leaves_with_what_it_stands_in_does_not_hand_the_keyboard_to_one_that_does_things) {
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

}  // namespace
}  // namespace tralio
