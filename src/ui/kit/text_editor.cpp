#include "ui/kit/text_editor.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QStyleHints>
#include <QTextBlock>
#include <QTextLayout>
#include <QTimerEvent>

#include <cmath>
#include <utility>

#include "common/text_limit.h"
#include "ui/kit/foreign_content.h"
#include "ui/kit/theme.h"

using namespace Qt::StringLiterals;

namespace tralio {
namespace {

constexpr qreal caretWidth = 1.5;
constexpr qreal caretInset = 1.5;  // how much shorter than the line, at both ends
constexpr qreal caretShift = 1.5;  // distance from the first letter of a placeholder

constexpr qsizetype mostReplaced = 1'000'000;
constexpr int mostSteps = 200;

}  // namespace

TextEditor::TextEditor(const TextStyle& style, const QSize& inset, Binding<QString> text, QWidget* parent)
    : TextArea(style, inset, parent), m_text(std::move(text)) {
    hideToolkitCaret();
    refresh();
    document()->clearUndoRedoStacks();  // the initial text is no edit
    connect(this, &QTextEdit::textChanged, this, &TextEditor::writeText);
    connect(this, &QTextEdit::cursorPositionChanged, this, &TextEditor::restartCaret);
}

bool TextEditor::isReturn(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool TextEditor::refresh() {
    const QString text = m_text.get();
    if (text == m_shown)
        return false;
    m_refreshing = true;
    replaceText(text);
    // Texts from other programs may replace the content all day; limits how much of it undo keeps.
    m_replaced += m_shown.size() + text.size();
    if (m_replaced > mostReplaced || document()->availableUndoSteps() > mostSteps) {
        document()->setUndoRedoEnabled(false);
        document()->setUndoRedoEnabled(true);
        m_replaced = 0;
    }
    m_refreshing = false;
    m_shown = text;
    // The caret is at the end, where the user continues to write, but a text from elsewhere is read from the
    // top.
    verticalScrollBar()->setValue(0);
    return true;
}

QString TextEditor::unselectedText() const {
    const QTextCursor cursor = textCursor();
    return text().remove(cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart());
}

void TextEditor::writeText() {
    if (m_refreshing)
        return;
    if (QString now = shownText(); now != m_shown) {
        m_shown = now;
        m_text.set(std::move(now));
    }
}

// Qt keeps a composition out of the document. To the user it is part of the text: without it, a click on the
// button would translate all but the last word, which most Vietnamese input methods compose.
QString TextEditor::shownText() const {
    QString shown = text();
    if (isComposing()) {
        const QTextBlock block = textCursor().block();
        const QTextLayout* layout = block.layout();
        shown.insert(block.position() + layout->preeditAreaPosition(), layout->preeditAreaText());
    }
    return shown;
}

void TextEditor::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Undo) || event->matches(QKeySequence::Redo)) {
        withAnyText([this, event] { TextArea::keyPressEvent(event); });
    } else if (!isReturn(*event)) {
        TextArea::keyPressEvent(event);
    } else if (isComposing()) {
        confirmComposition();
    } else {
        // QTextEdit would insert a line separator (U+2028) for Shift+Return.
        insertPlainText(u"\n"_s);
        ensureCursorVisible();
    }
}

void TextEditor::confirmComposition() {
    QGuiApplication::inputMethod()->commit();
    // If the input method does not commit synchronously, commit for it: the user would lose the visible text.
    if (const QString rest = textCursor().block().layout()->preeditAreaText(); !rest.isEmpty()) {
        QInputMethodEvent commit;
        commit.setCommitString(rest);
        inputMethodEvent(&commit);
        QGuiApplication::inputMethod()->reset();
    }
}

// WORKAROUND: Qt 6.4 draws its caret in whole pixels and inverts what is below it; ours is painted in
// `paintEvent`. The only way to hide Qt's at every scale is an input method event that asks for a caret of
// length 0. It holds until the next such event.
void TextEditor::hideToolkitCaret() {
    QInputMethodEvent event({}, {{QInputMethodEvent::Cursor, 0, 0}});
    TextArea::inputMethodEvent(&event);
}

void TextEditor::inputMethodEvent(QInputMethodEvent* event) {
    m_caretHiddenByComposition = false;
    int caret = int(event->preeditString().size());
    QList<QInputMethodEvent::Attribute> attributes;
    for (const QInputMethodEvent::Attribute& attribute : event->attributes()) {
        if (attribute.type == QInputMethodEvent::Cursor) {
            m_caretHiddenByComposition = attribute.length == 0;
            caret = attribute.start;
        } else {
            attributes << attribute;
        }
    }
    attributes << QInputMethodEvent::Attribute(QInputMethodEvent::Cursor, caret, 0);
    QInputMethodEvent withoutCaret(event->preeditString(), attributes);
    withoutCaret.setCommitString(
        event->commitString(), event->replacementStart(), event->replacementLength());
    TextArea::inputMethodEvent(&withoutCaret);
    writeText();
    restartCaret();
}

// Drags of files or pictures are handled by the widget around the editor. While a drag moves, Qt asks
// repeatedly, and every answer may need a call to another program: the first one is kept.
bool TextEditor::canInsertFromMimeData(const QMimeData* source) const {
    if (m_dragBringsText)
        return *m_dragBringsText;
    return foreignContent(*source) == ForeignContent::text;
}

void TextEditor::dragEnterEvent(QDragEnterEvent* event) {
    m_dragBringsText = foreignContent(*event->mimeData()) == ForeignContent::text;
    TextArea::dragEnterEvent(event);
}

void TextEditor::dragLeaveEvent(QDragLeaveEvent* event) {
    m_dragBringsText.reset();
    TextArea::dragLeaveEvent(event);
}

void TextEditor::dropEvent(QDropEvent* event) {
    TextArea::dropEvent(event);
    // Another program's text is copied, whatever Qt has agreed to: it may have been refused as too long.
    if (event->source() != viewport())
        event->setDropAction(Qt::CopyAction);
    m_dragBringsText.reset();
}

void TextEditor::insertFromMimeData(const QMimeData* source) {
    const auto text = m_textOf ? m_textOf(*source) : source->text();
    if (text && !text->isEmpty() && !isTooLong(*text)) {
        prepareFor(*text);
        insertPlainText(*text);
        ensureCursorVisible();
    }
}

QRectF TextEditor::caretArea() const {
    const QRectF place = cursorRect();
    const QTextBlock block = textCursor().block();
    const QTextLine line = block.layout()->lineForTextPosition(textCursor().positionInBlock());
    const qreal ratio = devicePixelRatioF();
    const auto onPixel = [ratio](qreal position) { return std::floor(position * ratio) / ratio; };
    const qreal top =
        place.top() + (line.isValid() ? line.ascent() : 0) - baselineOf(textStyle(), ratio) + caretInset;
    const qreal shift = document()->isEmpty() ? caretShift : 0;
    return {onPixel(place.left() - shift), onPixel(top), caretWidth, textStyle().line - 2 * caretInset};
}

void TextEditor::paintEvent(QPaintEvent* event) {
    TextArea::paintEvent(event);
    if (m_caretOn && m_showsCaret && !m_caretHiddenByComposition && isEnabled()) {
        QPainter painter(viewport());
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillRect(caretArea(), color(ColorRole::accentIcon));
    }
}

void TextEditor::focusInEvent(QFocusEvent* event) {
    TextArea::focusInEvent(event);
    restartCaret();
}

void TextEditor::focusOutEvent(QFocusEvent* event) {
    TextArea::focusOutEvent(event);
    restartCaret();
}

void TextEditor::setCaretShown(bool shown) {
    m_showsCaret = shown;
    viewport()->update();
}

void TextEditor::restartCaret() {
    m_caretOn = hasFocus();
    const int cycle = QGuiApplication::styleHints()->cursorFlashTime();
    if (m_caretOn && cycle > 1)
        m_blink.start(cycle / 2, this);
    else
        m_blink.stop();
    viewport()->update();
}

void TextEditor::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_blink.timerId()) {
        m_caretOn = !m_caretOn;
        viewport()->update(caretArea().toAlignedRect());
    } else {
        TextArea::timerEvent(event);
    }
}

}  // namespace tralio
