#include <QTest>

#include "ui/kit/error_strip.h"
#include "ui/kit/surface.h"
#include "ui/translate_view_fixture.h"

namespace tralio {
namespace {

TEST_F(TranslateViewTest, the_menus_choose_what_is_sent_and_swapping_exchanges_it) {
    choose(u"Ngôn ngữ nguồn: Tiếng Anh"_s, u"Tự động phát hiện"_s);
    choose(u"Ngôn ngữ nguồn: Tự động phát hiện"_s, u"Tiếng Nhật"_s);
    choose(u"Ngôn ngữ đích: Tiếng Việt"_s, u"Tiếng Hàn"_s);
    choose(u"Giọng điệu: Tự nhiên"_s, TranslationTone::formal.rawValue());
    translate(u"one"_s);
    EXPECT_TRUE(lastPrompt().contains(u"Ngôn ngữ nguồn: Tiếng Nhật\n"_s));
    EXPECT_TRUE(lastPrompt().contains(u"Ngôn ngữ đích: Tiếng Hàn\n"_s));
    EXPECT_TRUE(lastPrompt().contains(TranslationTone::formal.promptInstruction()));
    EXPECT_EQ(stage.store.text(u"app_setting_tone"_s), TranslationTone::formal.rawValue());

    stage.click(u"Đổi chiều ngôn ngữ"_s);
    EXPECT_EQ(input(), u"ONE"_s);
    EXPECT_EQ(result(), u"one"_s);
    EXPECT_TRUE(stage.hasControl(u"Ngôn ngữ nguồn: Tiếng Hàn"_s));
    EXPECT_TRUE(stage.hasControl(u"Ngôn ngữ đích: Tiếng Nhật"_s));
    EXPECT_EQ(stage.model.requests().size(), 1);
}

TEST_F(TranslateViewTest, the_tool_row_counts_characters_and_fills_and_empties_the_input) {
    EXPECT_TRUE(says(u"0 ký tự"_s));
    EXPECT_FALSE(stage.hasControl(u"Xóa"_s));
    EXPECT_FALSE(canPress(u"Tralio (↵ Enter)"_s));
    stage.type(u" "_s);
    EXPECT_FALSE(canPress(u"Tralio (↵ Enter)"_s)) << "blanks";
    stage.type(u"é👨‍👩‍👧"_s);
    EXPECT_TRUE(says(u"3 ký tự"_s));

    stage.desktop.pasteboard.copy(u"pasted"_s);
    stage.click(u"Dán"_s);
    EXPECT_EQ(input(), u"pasted"_s);
    EXPECT_TRUE(stage.model.requests().isEmpty());
    stage.click(u"Tralio (↵ Enter)"_s);
    stage.wait([this] { return result() == u"PASTED"_s; });
    stage.click(u"Dán & Tralio"_s);
    waitForRequests(2);

    stage.recognizer.reads({{.boundingBox = {0.1, 0.5, 0.5, 0.1}, .candidates = {u"seen"_s}}});
    stage.click(u"Chụp & Tralio"_s);
    EXPECT_TRUE(says(u"Đang quét chữ (OCR)..."_s));
    stage.desktop.clock.advance(150ms);
    stage.wait([this] { return result() == u"SEEN"_s; });
    EXPECT_EQ(input(), u"seen"_s);
    EXPECT_TRUE(says(u"4 ký tự"_s));

    stage.click(u"Xóa"_s);
    EXPECT_EQ(input(), QString());
    EXPECT_EQ(result(), QString());
    EXPECT_FALSE(stage.hasControl(u"Sao chép"_s));
}

TEST_F(TranslateViewTest, a_translation_can_be_given_up_and_an_error_put_away) {
    holdReplies();
    stage.type(u"slow"_s);
    stage.click(u"Tralio (↵ Enter)"_s);
    waitForRequests(1);
    EXPECT_FALSE(canPress(u"Đang dịch bằng AI..."_s));
    stage.click(u"Hủy"_s);
    EXPECT_FALSE(stage.hasControl(u"Hủy"_s));
    EXPECT_TRUE(canPress(u"Tralio (↵ Enter)"_s));
    stage.model.sendTheRest();
    stage.wait([this] { return stage.model.openConnections() == 0; });
    EXPECT_EQ(result(), QString()) << "a late success";

    stage.model.replies(StandInReply::error(500, u"quá tải"_s));
    stage.press(Qt::Key_Return);
    stage.wait([this] { return says(u"Lỗi máy chủ (500): quá tải"_s); });
    stage.click(u"Đóng thông báo lỗi"_s);
    EXPECT_FALSE(stage.find<ErrorStrip>()->isVisible());
}

TEST_F(TranslateViewTest, the_result_is_read_stopped_also_after_a_change_of_the_tab_and_copied) {
    translate(u"one"_s);
    stage.click(u"Đọc"_s);
    EXPECT_EQ(stage.synthesizer.reading, (Utterance{u"ONE"_s, {u"vi-VN"_s, u"en-US"_s}}));
    stage.click(u"Lịch sử"_s);
    stage.click(u"Tralio"_s);
    stage.click(u"Dừng"_s);
    EXPECT_EQ(stage.synthesizer.reading, std::nullopt);
    EXPECT_FALSE(stage.hasControl(u"Đọc"_s)) << "there is no result";

    stage.press(Qt::Key_Return);
    stage.wait([this] { return result() == u"ONE"_s; });
    stage.click(u"Đọc"_s);
    stage.synthesizer.end(ReadingEnd::failed);
    stage.wait([this] { return stage.hasControl(u"Đọc"_s); });
    EXPECT_TRUE(stage.find<ErrorStrip>()->isVisible());

    stage.click(u"Sao chép"_s);
    EXPECT_EQ(stage.desktop.pasteboard.content, u"ONE"_s);
    stage.desktop.clock.advance(1499ms);
    stage.settle();
    EXPECT_TRUE(stage.hasControl(u"Đã chép!"_s));
    stage.desktop.clock.advance(1ms);
    stage.settle();
    EXPECT_TRUE(stage.hasControl(u"Sao chép"_s));

    stage.click(u"Đọc"_s);
    stage.click(u"Lịch sử"_s);
    stage.synthesizer.end(ReadingEnd::failed);
    for (const bool isNews : {true, false}) {
        stage.wait([this] { return !stage.speech.isSpeaking(); });
        stage.click(u"Tralio"_s);
        EXPECT_EQ(stage.find<ErrorStrip>()->isVisible(), isNews) << "told where it can be read, and once";
        stage.click(u"Lịch sử"_s);
    }
}

TEST_F(TranslateViewTest, a_result_that_is_not_of_this_input_is_dimmed_until_the_next_one_comes) {
    const QString faint = color(ColorRole::secondary).name();
    const QString plain = color(ColorRole::text).name();
    translate(u"one"_s);
    EXPECT_EQ(inkOfResult(), plain);
    stage.type(u"!"_s);
    EXPECT_EQ(inkOfResult(), faint);
    stage.press(Qt::Key_Backspace);
    EXPECT_EQ(inkOfResult(), plain);

    holdReplies();
    stage.press(Qt::Key_Return);
    waitForRequests(2);
    EXPECT_EQ(inkOfResult(), faint);
    stage.click(u"Hủy"_s);
    EXPECT_EQ(inkOfResult(), faint);
    stage.model.replies(StandInReply::error(500, u"x"_s));
    stage.press(Qt::Key_Return);
    stage.wait([this] { return stage.find<ErrorStrip>()->isVisible(); });
    EXPECT_EQ(inkOfResult(), faint);
    stage.model.translatesTo(u"ONE"_s);
    stage.press(Qt::Key_Return);
    stage.wait([&] { return inkOfResult() == plain; });
    stage.click(u"Đổi chiều ngôn ngữ"_s);
    EXPECT_EQ(inkOfResult(), plain) << "each is the other's translation";
    stage.type(u"!"_s);
    stage.click(u"Đổi chiều ngôn ngữ"_s);
    EXPECT_EQ(inkOfResult(), faint) << "that text was never translated";
}

TEST_F(TranslateViewTest, what_the_shell_has_to_say_stands_where_the_count_does) {
    stage.appState.notice = u"Không có chữ nào đang được chọn"_s;
    stage.settle();
    EXPECT_TRUE(says(u"Không có chữ nào đang được chọn"_s));
    EXPECT_FALSE(says(u"0 ký tự"_s));
    stage.appState.notice = QString();
    stage.appState.isReadingCapture = true;
    stage.settle();
    EXPECT_TRUE(says(u"Đang quét chữ (OCR)..."_s));
    stage.appState.linesRead = 40;
    stage.settle();
    EXPECT_TRUE(says(u"Đang quét chữ (OCR)... 40 dòng"_s));
    const std::stop_source first;
    const std::stop_source second;
    stage.appState.beginReading(first);
    stage.controls(u"Lịch sử"_s).constFirst()->setFocus();
    stage.press(Qt::Key_Escape);
    EXPECT_TRUE(first.stop_requested());
    stage.appState.beginReading(second);
    stage.settle();
    EXPECT_TRUE(says(u"Đang quét chữ (OCR)..."_s)) << "the next picture is counted from its own start";
    EXPECT_FALSE(second.stop_requested());
    stage.click(u"Hủy"_s);
    EXPECT_TRUE(second.stop_requested());
    stage.appState.isReadingCapture = false;
    stage.settle();
    EXPECT_TRUE(says(u"0 ký tự"_s));
    EXPECT_FALSE(stage.hasControl(u"Hủy"_s));
}

TEST_F(TranslateViewTest, the_keyboard_goes_on_where_it_was_when_a_button_is_disabled_or_goes) {
    const auto focused = [] {
        const auto* control = qobject_cast<Control*>(QApplication::focusWidget());
        return control != nullptr && control->showsFocusRing() ? control->title() : QString();
    };
    stage.type(u"slow"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
    const auto goTo = [&](const QString& title, Qt::Key key) {
        for (int steps = 0; steps < 40 && focused() != title; ++steps)
            QTest::keyClick(QApplication::focusWidget(), key);
        EXPECT_EQ(focused(), title);
    };
    goTo(u"Tralio (↵ Enter)"_s, Qt::Key_Tab);
    holdReplies();
    stage.press(Qt::Key_Space);
    waitForRequests(1);
    EXPECT_EQ(focused(), u"Đang dịch bằng AI..."_s);
    stage.press(Qt::Key_Space);
    EXPECT_EQ(stage.model.requests().size(), 1);
    stage.press(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Hủy"_s);
    stage.press(Qt::Key_Space);
    EXPECT_EQ(focused(), u"Tralio (↵ Enter)"_s);

    goTo(u"Tralio"_s, Qt::Key_Backtab);
    for (const QString& tab : {u"Lịch sử"_s, u"Cài đặt"_s}) {
        stage.press(Qt::Key_Right);
        EXPECT_EQ(focused(), tab);
    }
    stage.press(Qt::Key_Left);
    stage.press(Qt::Key_Left);
    EXPECT_EQ(focused(), u"Tralio"_s) << "the panel took the focus from the tabs";
    stage.click(u"Cài đặt"_s);
    stage.click(u"Tralio"_s);
    EXPECT_TRUE(stage.find<MultilineEnterInputView>()->hasFocus());
}

TEST_F(TranslateViewTest, a_menu_closes_with_its_panel) {
    stage.click(u"Ngôn ngữ nguồn: Tiếng Anh"_s);
    ASSERT_TRUE(stage.hasControl(u"Tiếng Nhật"_s));
    stage.click(u"Lịch sử"_s);
    EXPECT_FALSE(stage.hasControl(u"Tiếng Nhật"_s));
}

TEST_F(TranslateViewTest, loading_the_panel_is_no_edit_and_a_result_keeps_its_selection) {
    stage.type(u"typed"_s);
    stage.click(u"Lịch sử"_s);
    stage.click(u"Tralio"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(input(), u"typed"_s);

    stage.model.translatesTo(u"a\r\nb\rc\u2029d"_s);
    stage.press(Qt::Key_Return);
    stage.wait([this] { return !result().isEmpty(); });
    stage.find<ReadingArea>()->selectAll();
    stage.type(u"."_s);
    EXPECT_TRUE(stage.find<ReadingArea>()->textCursor().hasSelection());
}

}  // namespace
}  // namespace tralio
