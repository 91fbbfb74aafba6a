#include <QDrag>
#include <QScrollBar>

#include "ui/history/history_row.h"
#include "ui/kit/prompt_editor.h"
#include "ui/kit/scroll_panel.h"
#include "ui/kit/text_field.h"
#include "ui/stage_test.h"

namespace tralio {
namespace {

/// Where the keyboard is after what it was in has gone, and what the next key then does.
class KeyboardPlace : public StageTest {
protected:
    void fillHistory(const QStringList& texts) {
        TranslationHistoryStore history(store);
        for (const QString& text : texts)
            history.add(text, u"x"_s, u"Tiếng Anh"_s, u"Tiếng Việt"_s, u"Tự nhiên"_s);
    }
    QStringList stored() {
        const TranslationHistoryStore history(store);
        QStringList texts;
        for (const TranslationItem& item : history.items())
            texts.prepend(item.sourceText);
        return texts;
    }
    void pressUndo() {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Z, Qt::ControlModifier);
        settle();
    }
};

TEST_F(KeyboardPlace, the_keys_that_undo_bring_all_back_that_was_deleted_meanwhile_but_not_from_an_editor) {
    const QStringList texts{u"one"_s, u"two"_s, u"three"_s, u"four"_s};
    fillHistory(texts);
    open();
    click(u"Lịch sử"_s);
    click(u"Xóa"_s);
    pass(5s);
    click(u"Tác giả"_s);
    click(u"Lịch sử"_s);
    click(u"Xóa"_s);
    EXPECT_TRUE(Stage::texts().contains(u"Đã xóa 2 bản dịch"_s));
    pass(5s);
    pressUndo();
    EXPECT_EQ(stored(), texts);
    EXPECT_FALSE(hasControl(u"Hoàn tác"_s));

    focus(u"Xóa"_s);
    press(Qt::Key_Space);
    EXPECT_TRUE(Stage::texts().contains(u"Đã xóa một bản dịch"_s));
    press(Qt::Key_Space);
    EXPECT_EQ(stored().size(), 2) << "the second press meant the same button";
    EXPECT_TRUE(isOnTab(u"Lịch sử"_s));
    press(Qt::Key_Tab);
    focus(u"Lịch sử"_s);
    press(Qt::Key_Right);
    press(Qt::Key_Left);
    ASSERT_TRUE(isOnTab(u"Lịch sử"_s));
    QTest::mouseClick(find<HistoryRow>(), Qt::LeftButton);
    wait([this] { return isOnTab(u"Tralio"_s); });
    EXPECT_TRUE(focusedTitle().isEmpty()) << "the input has it, and not the tab that was left";
    type(u"typed"_s);
    pressUndo();
    EXPECT_EQ(input(), u"four"_s);
    EXPECT_EQ(stored().size(), 2) << "an editor undoes what was typed";
    click(u"Tác giả"_s);
    pressUndo();
    EXPECT_EQ(stored(), texts);
}

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

TEST_F(KeyboardPlace, the_walk_through_gives_the_keyboard_back_to_what_opened_it) {
    open();
    click(u"Cài đặt"_s);
    focus(u"Xem giới thiệu"_s);
    press(Qt::Key_Space);
    ASSERT_FALSE(hasControl(u"Xem giới thiệu"_s));
    click(u"Bỏ qua"_s);
    EXPECT_EQ(focusedTitle(), u"Xem giới thiệu"_s);
}

TEST_F(KeyboardPlace, fields_that_leave_with_the_keyboard_leave_it_where_no_key_does_harm) {
    useOwnEndpoint();
    open();
    click(u"Cài đặt"_s);
    const auto model = [](const TextField& field) { return field.accessibleName() == u"Tên Model"; };
    part<TextField>(model)->setFocus(Qt::MouseFocusReason);
    click(u"Khôi phục mặc định"_s);
    EXPECT_EQ(part<TextField>(model), nullptr);
    press(Qt::Key_Space);
    press(Qt::Key_Return);
    EXPECT_FALSE(store.boolean(u"app_setting_auto_paste"_s).has_value());
    EXPECT_TRUE(this->model.requests().isEmpty());
    press(Qt::Key_Tab);
    EXPECT_FALSE(focusedTitle().isEmpty()) << "Tab goes on from there";

    focus(u"Kiểm tra kết nối"_s);
    pressUndo();
    ASSERT_NE(part<TextField>(model), nullptr);
    press(Qt::Key_Space);
    EXPECT_TRUE(this->model.requests().isEmpty());
}

TEST_F(KeyboardPlace, a_word_that_is_composed_in_a_field_counts_before_it_is_confirmed) {
    useOwnEndpoint();
    open();
    click(u"Cài đặt"_s);
    auto* field =
        part<TextField>([](const TextField& each) { return each.accessibleName() == u"Tên Model"; });
    field->setFocus(Qt::MouseFocusReason);
    QInputMethodEvent nothing;
    QApplication::sendEvent(field, &nothing);
    EXPECT_FALSE(store.text(u"app_setting_model"_s).has_value()) << "an event in which nothing happens";
    field->selectAll();
    QInputMethodEvent composition(u"mội"_s, {});
    QApplication::sendEvent(field, &composition);
    settle();
    EXPECT_EQ(setting(u"model"_s), u"mội"_s);
    EXPECT_EQ(field->text(), QString()) << "which goes on";
    type(u"mội"_s);
    EXPECT_EQ(field->text(), u"mội"_s);
    EXPECT_EQ(setting(u"model"_s), u"mội"_s);
}

TEST_F(KeyboardPlace, a_copy_button_that_leaves_with_the_result_does_not_hand_the_keyboard_to_what_pastes) {
    open();
    translate(u"one"_s);
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
