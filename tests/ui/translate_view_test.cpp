
#include "ui/kit/surface.h"
#include "ui/stage_test.h"

namespace tralio {
namespace {

/// The translate panel in the hands of a user.
struct TranslateViewTest : StageTest {
    TranslateViewTest() { open(); }

    [[nodiscard]] QString inkOfResult() const {
        return find<ReadingArea>()->palette().color(QPalette::Text).name();
    }
    [[nodiscard]] bool says(const QString& text) const { return texts().contains(text); }
    [[nodiscard]] QString lastPrompt() const { return model.requests().last().systemPrompt(); }
};

TEST_F(TranslateViewTest, the_menus_choose_what_is_sent_and_swapping_exchanges_it) {
    click(u"Ngôn ngữ nguồn: Tiếng Anh"_s, u"Tự động phát hiện"_s);
    click(u"Ngôn ngữ nguồn: Tự động phát hiện"_s, u"Tiếng Nhật"_s);
    click(u"Ngôn ngữ đích: Tiếng Việt"_s, u"Tiếng Hàn"_s);
    click(u"Giọng điệu: Tự nhiên"_s, TranslationTone::formal.rawValue());
    translate(u"one"_s);
    EXPECT_TRUE(lastPrompt().contains(u"Ngôn ngữ nguồn: Tiếng Nhật\n"_s));
    EXPECT_TRUE(lastPrompt().contains(u"Ngôn ngữ đích: Tiếng Hàn\n"_s));
    EXPECT_TRUE(lastPrompt().contains(TranslationTone::formal.promptInstruction()));
    EXPECT_EQ(store.text(u"app_setting_tone"_s), TranslationTone::formal.rawValue());

    click(u"Đổi chiều ngôn ngữ"_s);
    EXPECT_EQ(input(), u"ONE"_s);
    EXPECT_EQ(result(), u"one"_s);
    EXPECT_TRUE(hasControl(u"Ngôn ngữ nguồn: Tiếng Hàn"_s));

    click(u"Ngôn ngữ đích: Tiếng Nhật"_s);
    ASSERT_TRUE(hasControl(u"Tiếng Nhật"_s));
    EXPECT_FALSE(hasControl(u"Tự động phát hiện"_s)) << "which is no language to translate into";
    click(u"Lịch sử"_s);
    EXPECT_FALSE(hasControl(u"Tiếng Nhật"_s)) << "a menu outlives its panel";
    click(u"Tralio"_s);
    EXPECT_TRUE(hasControl(u"Ngôn ngữ nguồn: Tiếng Anh"_s) && hasControl(u"Ngôn ngữ đích: Tiếng Việt"_s))
        << "the languages are the panel's";
    click(u"Giọng điệu: "_s + TranslationTone::formal.rawValue());
    for (const TranslationTone tone : TranslationTone::allCases())
        EXPECT_EQ(controls(tone.rawValue()).constLast()->isChecked(), tone == TranslationTone::formal);
}

TEST_F(TranslateViewTest, the_tool_row_counts_characters_and_fills_and_empties_the_input) {
    EXPECT_TRUE(says(u"0 ký tự"_s));
    EXPECT_FALSE(hasControl(u"Xóa"_s));
    const Control* start = controls(u"Tralio (↵ Enter)"_s).constFirst();
    EXPECT_FALSE(start->isEnabled());
    type(u" "_s);
    EXPECT_FALSE(start->isEnabled()) << "blanks";
    type(u"é👨‍👩‍👧"_s);
    EXPECT_TRUE(says(u"3 ký tự"_s));

    desktop.pasteboard.copy(u"pasted"_s);
    click(u"Dán"_s);
    EXPECT_EQ(input(), u"pasted"_s);
    EXPECT_TRUE(model.requests().isEmpty());
    click(u"Tralio (↵ Enter)"_s);
    wait([this] { return result() == u"PASTED"_s; });
    click(u"Dán & Tralio"_s);
    waitForRequests(2);

    pictureSays(u"seen"_s);
    click(u"Chụp & Tralio"_s);
    EXPECT_TRUE(says(u"Đang quét chữ (OCR)..."_s));
    EXPECT_FALSE(hasControl(u"Hủy"_s)) << "it ends nothing yet, nor does Escape, which closes the window";
    desktop.clock.advance(150ms);
    wait([this] { return result() == u"SEEN"_s; });
    EXPECT_TRUE(says(u"4 ký tự"_s));

    click(u"Xóa"_s);
    EXPECT_EQ(input(), QString());
    EXPECT_EQ(result(), QString());
    EXPECT_FALSE(hasControl(u"Sao chép"_s));
}

TEST_F(TranslateViewTest, the_result_is_read_stopped_also_after_a_change_of_the_tab_and_copied) {
    translate(u"one"_s);
    click(u"Đọc"_s);
    EXPECT_EQ(synthesizer.reading, (Utterance{u"ONE"_s, {u"vi-VN"_s, u"en-US"_s}}));
    click(u"Lịch sử"_s, u"Tralio"_s, u"Dừng"_s);
    EXPECT_EQ(synthesizer.reading, std::nullopt);
    EXPECT_FALSE(hasControl(u"Đọc"_s)) << "there is no result";

    submit(u"ONE"_s);
    click(u"Đọc"_s);
    synthesizer.end(ReadingEnd::failed);
    wait([this] { return hasControl(u"Đọc"_s); });
    EXPECT_TRUE(showsError());

    click(u"Sao chép"_s);
    EXPECT_EQ(desktop.pasteboard.content, u"ONE"_s);
    pass(1499ms);
    EXPECT_TRUE(hasControl(u"Đã chép!"_s));
    pass(1ms);
    click(u"Sao chép"_s);
    pass(1s);
    click(u"Đã chép!"_s);
    pass(1s);
    EXPECT_TRUE(hasControl(u"Đã chép!"_s));
    type(u" two"_s);
    submit(u"ONE TWO"_s);
    EXPECT_TRUE(hasControl(u"Sao chép"_s)) << "the clipboard has the one before";
    focus(u"Sao chép"_s);
    appState.offerTranslation(u"one"_s);
    settle();
    submit(u"ONE"_s);
    EXPECT_EQ(desktop.pasteboard.content, u"ONE"_s) << "Return was the button's";

    click(u"Đọc"_s, u"Lịch sử"_s);
    synthesizer.end(ReadingEnd::failed);
    for (const bool isNews : {true, false}) {
        wait([this] { return !speech.isSpeaking(); });
        click(u"Tralio"_s);
        EXPECT_EQ(showsError(), isNews) << "told where it can be read, and once";
        click(u"Lịch sử"_s);
    }
}

TEST_F(TranslateViewTest, a_result_that_is_not_of_this_input_is_dimmed_until_the_next_one_comes) {
    const QString faint = color(ColorRole::secondary).name();
    const QString plain = color(ColorRole::text).name();
    translate(u"one"_s);
    EXPECT_EQ(inkOfResult(), plain);
    type(u"!"_s);
    EXPECT_EQ(inkOfResult(), faint);
    press(Qt::Key_Backspace);
    EXPECT_EQ(inkOfResult(), plain);

    holdReplies();
    press(Qt::Key_Return);
    waitForRequests(2);
    EXPECT_EQ(inkOfResult(), faint);
    click(u"Hủy"_s);
    EXPECT_EQ(inkOfResult(), faint);
    model.replies(StandInReply::error(500, u"x"_s));
    press(Qt::Key_Return);
    wait([this] { return showsError(); });
    EXPECT_EQ(result(), u"ONE"_s) << "a failure leaves the texts alone";
    EXPECT_EQ(inkOfResult(), faint);
    model.translatesTo(u"ONE"_s);
    press(Qt::Key_Return);
    EXPECT_FALSE(showsError());
    wait([&] { return inkOfResult() == plain; });
    click(u"Đổi chiều ngôn ngữ"_s);
    EXPECT_EQ(inkOfResult(), plain) << "each is the other's translation";
    type(u"!"_s);
    click(u"Đổi chiều ngôn ngữ"_s);
    EXPECT_EQ(inkOfResult(), faint) << "that text was never translated";
}

TEST_F(TranslateViewTest, what_the_shell_has_to_say_stands_where_the_count_does) {
    const auto expect = [this](const QString& said) {
        settle();
        EXPECT_THAT(texts().filter(QRegularExpression(u"ký tự|có chữ|quét chữ"_s)), ElementsAre(said));
    };
    const std::stop_source first;
    const std::stop_source second;
    appState.beginReading(first);
    expect(u"Đang quét chữ (OCR)..."_s);
    appState.linesRead = 40;
    expect(u"Đang quét chữ (OCR)... 40 dòng"_s);
    appState.notice = u"Không có chữ nào đang được chọn"_s;
    expect(appState.notice());  // for its moment, also while a picture is read
    appState.notice = QString();
    expect(u"Đang quét chữ (OCR)... 40 dòng"_s);
    controls(u"Lịch sử"_s).constFirst()->setFocus();
    press(Qt::Key_Escape);
    EXPECT_TRUE(first.stop_requested());
    appState.beginReading(second);
    expect(u"Đang quét chữ (OCR)..."_s);  // the next picture is counted from its own start
    EXPECT_FALSE(second.stop_requested());
    click(u"Hủy"_s);
    EXPECT_TRUE(second.stop_requested());
    expect(u"0 ký tự"_s);
    EXPECT_FALSE(hasControl(u"Hủy"_s));
    const std::stop_source stalledFile;
    appState.beginAwaiting(AppState::Awaited::textFile, stalledFile);
    expect(u"0 ký tự"_s);  // no picture is read
    press(Qt::Key_Escape);
    EXPECT_TRUE(stalledFile.stop_requested());
}

TEST_F(TranslateViewTest, the_keyboard_goes_on_where_it_was_when_a_button_is_disabled_or_goes) {
    const auto focused = [] { return showsFocusRing() ? focusedTitle() : QString(); };
    type(u"slow"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
    const auto goTo = [&](const QString& title, Qt::Key key) {
        for (int steps = 0; steps < 40 && focused() != title; ++steps)
            press(key);
        EXPECT_EQ(focused(), title);
    };
    goTo(u"Tralio (↵ Enter)"_s, Qt::Key_Tab);
    holdReplies();
    press(Qt::Key_Space);
    waitForRequests(1);
    EXPECT_EQ(focused(), u"Đang dịch bằng AI..."_s);
    press(Qt::Key_Space, Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Hủy"_s);
    press(Qt::Key_Space, Qt::Key_Space);
    EXPECT_FALSE(hasControl(u"Hủy"_s));

    goTo(u"Tralio"_s, Qt::Key_Backtab);
    for (const QString& tab : {u"Lịch sử"_s, u"Cài đặt"_s}) {
        press(Qt::Key_Right);
        EXPECT_EQ(focused(), tab);
    }
    press(Qt::Key_Left, Qt::Key_Left);
    EXPECT_EQ(focused(), u"Tralio"_s) << "the panel took the focus from the tabs";
    click(u"Cài đặt"_s, u"Tralio"_s);
    EXPECT_TRUE(find<MultilineEnterInputView>()->hasFocus());

    model.translatesTo(u"done"_s);
    submit(u"done"_s);
    EXPECT_EQ(model.requests().size(), 2) << "the second press of either button hit something";
}

TEST_F(TranslateViewTest, loading_the_panel_is_no_edit_and_a_result_keeps_its_selection) {
    type(u"typed"_s);
    click(u"Lịch sử"_s, u"Tralio"_s);
    pressUndo();
    EXPECT_EQ(input(), u"typed"_s);

    model.translatesTo(u"a\r\nb\rc\u2029d"_s);
    press(Qt::Key_Return);
    wait([this] { return !result().isEmpty(); });
    find<ReadingArea>()->selectAll();
    type(u"."_s);
    EXPECT_TRUE(find<ReadingArea>()->textCursor().hasSelection());
    focus(u"Đọc"_s);
    appState.notifyPopoverOpened();
    settle();
    EXPECT_TRUE(controls(u"Đọc"_s).constFirst()->hasFocus());
}

}  // namespace
}  // namespace tralio
