#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>

#include "ui/kit/multiline_enter_input_view.h"
#include "ui/kit/reading_area.h"
#include "widget_support.h"

namespace tralio {
namespace {

class InputViewTest : public testing::Test {
protected:
    InputViewTest() {
        m_view.resize(490, 115);
        showActive(m_view);
        m_view.setFocus();
    }

    void compose(const QString& preedit, const QString& commit = {}) {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QApplication::sendEvent(&m_view, &event);
    }

    void setFromOutside(const QString& text) {
        m_text = text;
        m_view.refresh();
    }

    void select(int from, int to) {
        QTextCursor cursor = m_view.textCursor();
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        m_view.setTextCursor(cursor);
    }

    void write(const QString& text) {
        m_text = text;
        ++m_writes;
    }

    QString m_text;
    int m_writes = 0;
    int m_submits = 0;
    MultilineEnterInputView m_view{
        {.get = [this] { return m_text; }, .set = [this](const QString& text) { write(text); }},
        [this] { ++m_submits; }};
};

TEST_F(InputViewTest,
    return_submits_an_empty_box_too_and_with_shift_or_alt_breaks_a_line_tab_is_typed_and_shift_tab_leaves) {
    QTest::keyClick(&m_view, Qt::Key_Return);
    QTest::keyClicks(&m_view, u"a"_s);
    QTest::keyClick(&m_view, Qt::Key_Return);
    QTest::keyClick(&m_view, Qt::Key_Enter, Qt::KeypadModifier);
    QTest::keyClick(&m_view, Qt::Key_Return, Qt::ControlModifier);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, u"\r"_s, true);
    QApplication::sendEvent(&m_view, &held);
    EXPECT_EQ(m_submits, 4);
    EXPECT_EQ(m_text, u"a"_s);

    QTest::keyClick(&m_view, Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClicks(&m_view, u"b"_s);
    QTest::keyClick(&m_view, Qt::Key_Return, Qt::AltModifier);
    QTest::keyClick(&m_view, Qt::Key_Enter, Qt::ShiftModifier | Qt::KeypadModifier);
    QWidget next(&m_view);
    next.setFocusPolicy(Qt::StrongFocus);
    next.show();
    QTest::keyClick(&m_view, Qt::Key_Tab);
    EXPECT_TRUE(m_view.hasFocus());
    QTest::keyClick(&m_view, Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_FALSE(m_view.hasFocus());
    EXPECT_EQ(m_text, u"a\nb\n\n\t"_s);
    EXPECT_EQ(m_submits, 4);
}

TEST_F(InputViewTest, the_text_holds_a_composition_where_it_is_shown) {
    setFromOutside(u"một\nba"_s);
    QTest::keyClick(&m_view, Qt::Key_Home);
    compose(u"vie"_s);
    compose(u"việt"_s);
    EXPECT_EQ(m_text, u"một\nviệtba"_s);
    m_view.refresh();
    compose({}, u"việt "_s);
    EXPECT_EQ(m_text, u"một\nviệt ba"_s);
    EXPECT_EQ(m_writes, 3);

    compose(u"hai"_s);
    compose({});
    EXPECT_EQ(m_text, u"một\nviệt ba"_s) << "given up by the input method";
    compose(u"hai"_s);
    setFromOutside({});
    EXPECT_EQ(m_view.text(), QString()) << "nor does a composition outlive a text from outside";

    compose(u"tiếng"_s);
    QTest::keyClick(&m_view, Qt::Key_Return);
    EXPECT_EQ(m_submits, 0) << "it keeps Return, which confirms it";
    EXPECT_EQ(m_text, u"tiếng"_s);
    QTest::keyClick(&m_view, Qt::Key_Return);
    EXPECT_EQ(m_submits, 1);
    EXPECT_EQ(m_text, u"tiếng"_s);
}

TEST_F(InputViewTest, texts_from_outside_replace_the_content_and_undo_goes_back_over_them_but_not_for_ever) {
    QTest::keyClicks(&m_view, u"cu"_s);
    m_writes = 0;
    setFromOutside(u"mới\nhơn"_s);
    EXPECT_EQ(m_view.text(), u"mới\nhơn"_s);
    EXPECT_EQ(m_writes, 0) << "written back";
    QTest::keyClicks(&m_view, u"!"_s);
    EXPECT_EQ(m_text, u"mới\nhơn!"_s) << "the caret stands at the end";

    setFromOutside(u"second"_s);
    m_view.undo();
    EXPECT_EQ(m_text, u"mới\nhơn!"_s);
    m_view.redo();
    EXPECT_EQ(m_text, u"second"_s);
    while (m_view.document()->isUndoAvailable())
        m_view.undo();
    EXPECT_EQ(m_text, QString());

    for (int i = 0; i < 12; ++i)
        setFromOutside(QString(50'000, QChar(u'a' + i)));
    EXPECT_LT(m_view.document()->availableUndoSteps(), 5);
    for (int i = 0; i < 500; ++i)
        setFromOutside(QString::number(i));
    EXPECT_LT(m_view.document()->availableUndoSteps(), 210);
    EXPECT_EQ(m_view.text(), m_text);
}

TEST_F(InputViewTest, the_rest_is_what_is_not_selected_and_an_equal_text_leaves_the_selection_alone) {
    setFromOutside(u"một hai ba"_s);
    select(3, 7);
    EXPECT_EQ(m_view.unselectedText(), u"một ba"_s);
    m_view.selectAll();
    EXPECT_EQ(m_view.unselectedText(), QString());
    for (const QString& text : {u"one two"_s, u"windows\r\nbreaks\rand\u2029more"_s}) {
        setFromOutside(text);
        select(1, 3);
        m_view.refresh();
        EXPECT_EQ(m_view.textCursor().anchor(), 1);
        EXPECT_EQ(m_view.textCursor().position(), 3);
    }
}

TEST_F(InputViewTest, characters_come_back_as_they_were_given) {
    const QString odd =
        u"5\u00A0km\u2028\tdòng\u200B\u00AD\uFFFC \"thẳng\" -- ... 👩‍👩‍👧 \u202Fx\n\n"_s;
    setFromOutside(odd);
    EXPECT_EQ(m_view.text(), odd);
    QTest::keyClicks(&m_view, u"\"q\"--"_s);
    EXPECT_EQ(m_text, odd + u"\"q\"--"_s) << "and nothing typed is substituted";

    QApplication::clipboard()->setText(odd);
    setFromOutside({});
    m_view.paste();
    EXPECT_EQ(m_text, odd);
    m_view.selectAll();
    m_view.copy();
    EXPECT_EQ(QApplication::clipboard()->text(), odd);
}

TEST_F(InputViewTest, rich_text_is_pasted_plain_and_pictures_not_at_all) {
    auto* rich = new QMimeData;
    rich->setHtml(u"<b>đậm</b><img src='x.png'>"_s);
    rich->setText(u"đậm"_s);
    auto* picture = new QMimeData;
    picture->setImageData(QImage(2, 2, QImage::Format_RGB32));
    for (QMimeData* copied : {rich, picture}) {
        QApplication::clipboard()->setMimeData(copied);
        QTest::keyClick(&m_view, Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(m_text, u"đậm"_s);
        EXPECT_FALSE(m_view.toHtml().contains(u"font-weight:7"_s));
    }
}

TEST_F(InputViewTest, the_placeholder_shows_while_there_is_nothing_to_see) {
    const QImage bare = pictureOf(*m_view.viewport());
    const auto isHinted = [&] { return difference(bare, pictureOf(*m_view.viewport())).width() > 50; };
    m_view.setPlaceholder(u"Nhập nội dung"_s);
    EXPECT_TRUE(isHinted());
    EXPECT_EQ(m_view.accessibleDescription(), u"Nhập nội dung"_s);
    compose(u"."_s);
    EXPECT_FALSE(isHinted()) << "a composition takes its place";
    compose({});
    EXPECT_TRUE(isHinted());
    setFromOutside(u"."_s);
    EXPECT_FALSE(isHinted());
    EXPECT_EQ(m_view.accessibleDescription(), QString());
}

TEST_F(InputViewTest, only_the_accent_caret_is_drawn_at_every_scale) {
    QTest::keyClicks(&m_view, u" "_s);
    compose(u" "_s);
    compose({}, u" "_s);
    for (const qreal scale : {1.0, 1.25, 1.5, 2.0}) {
        QImage picture(m_view.viewport()->size() * scale, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        painter.scale(scale, scale);
        m_view.viewport()->render(&painter);
        painter.end();
        int caretPixels = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) {
                // The accent and all its blends with white are full of blue; an inverting caret is black.
                ASSERT_GE(qBlue(picture.pixel(x, y)), 250) << "scale " << scale;
                caretPixels += qRed(picture.pixel(x, y)) < 100 ? 1 : 0;
            }
        EXPECT_GE(caretPixels, 15 * scale) << "scale " << scale;
    }
}

TEST_F(InputViewTest, lines_stand_twenty_apart_whatever_they_hold) {
    const int top = m_view.cursorRect().top();
    setFromOutside(u"Ấ\n日本語\n👩‍👩‍👧\n"_s);
    m_view.moveCursor(QTextCursor::End);
    EXPECT_EQ(m_view.cursorRect().top() + m_view.verticalScrollBar()->value(), top + 3 * 20);
}

TEST_F(InputViewTest, a_text_that_is_dropped_is_copied_though_its_source_would_rather_move_it) {
    QMimeData dragged;
    dragged.setText(u"theirs"_s);
    constexpr auto asked = Qt::ShiftModifier;  // for a move
    QDragEnterEvent enter({5, 5}, Qt::CopyAction | Qt::MoveAction, &dragged, Qt::LeftButton, asked);
    QDropEvent drop({5, 5}, Qt::CopyAction | Qt::MoveAction, &dragged, Qt::LeftButton, asked);
    QApplication::sendEvent(m_view.viewport(), &enter);
    drop.setDropAction(Qt::MoveAction);
    QApplication::sendEvent(m_view.viewport(), &drop);
    EXPECT_EQ(m_text, u"theirs"_s);
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
}

TEST(ReadingArea, can_be_selected_and_copied_but_not_changed) {
    ReadingArea area;
    area.resize(400, 115);
    const QString text = u"một\u00A0dòng\nhai"_s;
    area.setText(text);
    showActive(area);
    QApplication::clipboard()->setText(u"x"_s);
    QTest::keyClicks(&area, u"x"_s);
    for (const Qt::Key key : {Qt::Key_V, Qt::Key_A, Qt::Key_C})
        QTest::keyClick(&area, key, Qt::ControlModifier);
    EXPECT_EQ(area.text(), text);
    EXPECT_EQ(QApplication::clipboard()->text(), text);

    area.setText(u"khác"_s);
    EXPECT_FALSE(area.textCursor().hasSelection());
    EXPECT_FALSE(area.document()->isUndoAvailable()) << "keeps every former result in memory";
}

TEST_F(InputViewTest, a_text_of_one_endless_word_is_shown_without_a_freeze_and_comes_back_whole) {
    const QString endless(300'000, u'x');
    const Stopwatch time;
    setFromOutside(endless);
    QTest::keyClicks(&m_view, u"yz"_s);
    static_cast<void>(pictureOf(m_view));
    EXPECT_EQ(m_text, endless + u"yz"_s);
    setFromOutside({});
    EXPECT_EQ(m_view.wordWrapMode(), QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTest::keyClick(&m_view, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(m_text, endless + u"yz"_s);
    EXPECT_EQ(m_view.wordWrapMode(), QTextOption::WrapAnywhere);
    m_view.undo();
    m_view.undo();
    EXPECT_EQ(m_view.wordWrapMode(), QTextOption::WrapAtWordBoundaryOrAnywhere) << "before it came";
    EXPECT_LT(time.elapsed(), 5000) << "it takes half a minute where each line looks for the end of the word";
}

}  // namespace
}  // namespace tralio
