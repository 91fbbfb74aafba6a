#include "ui/kit/text_area.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QTextBlock>
#include <QTextFrame>
#include <QTextLayout>
#include <QWheelEvent>

#include <cmath>
#include <utility>

#include "ui/kit/edit_menu.h"
#include "ui/kit/overlay_scroll_bar.h"
#include "ui/kit/painting.h"
#include "ui/kit/theme.h"

namespace tralio {
namespace {

// QTextDocument puts the baseline of a line of fixed height at four fifths of the height.
int documentBaseline(const TextStyle& style) {
    return style.line * 4 / 5;
}

// To wrap at word boundaries, QTextLayout scans the whole word for each of its lines: for a megabyte without
// a blank that takes half a minute.
bool hasEndlessWord(const QString& text) {
    constexpr qsizetype longestWord = 2000;
    qsizetype word = 0;
    for (const QChar character : text) {
        word = character.isSpace() ? 0 : word + 1;
        if (word > longestWord)
            return true;
    }
    return false;
}

QString withLineFeeds(QString text) {
    return text.replace(QChar::ParagraphSeparator, u'\n');
}

}  // namespace

TextArea::TextArea(const TextStyle& style, const QSize& inset, QWidget* parent)
    : QTextEdit(parent), m_style(style), m_scrollBar(new OverlayScrollBar(this)) {
    setFrameShape(QFrame::NoFrame);
    setAcceptRichText(false);
    setFont(fontFor(style));
    viewport()->setAutoFillBackground(false);
    placeText(inset);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);

    // Later lines inherit the format of the first one. Undo must not remove it.
    document()->setUndoRedoEnabled(false);
    QTextBlockFormat format;
    format.setLineHeight(style.line, QTextBlockFormat::FixedHeight);
    textCursor().setBlockFormat(format);
    document()->setUndoRedoEnabled(true);

    connect(this, &QTextEdit::textChanged, this, &TextArea::describeAloud);
    connect(&Theme::current(), &Theme::changed, this, &TextArea::followTheme);
    followTheme();
}

// QTextDocument has one margin, in whole pixels, for all sides. The rest of the inset at the sides goes into
// the viewport's margins, and the fraction by which the baseline is off on high-density screens into the top
// margin of the root frame.
void TextArea::placeText(const QSize& inset) {
    const qreal above = inset.height() + baselineOf(m_style, devicePixelRatioF()) - documentBaseline(m_style);
    const int margin = int(std::floor(above));
    document()->setDocumentMargin(margin);
    setViewportMargins(inset.width() - margin, 0, inset.width() - margin, 0);
    QTextFrameFormat frame = document()->rootFrame()->frameFormat();
    frame.setTopMargin(above);
    document()->rootFrame()->setFrameFormat(frame);
}

void TextArea::followTheme() {
    QPalette colors = palette();
    colors.setColor(QPalette::Base, Qt::transparent);
    colors.setColor(QPalette::Window, Qt::transparent);
    colors.setColor(QPalette::Text, color(m_role));
    colors.setColor(QPalette::HighlightedText, color(ColorRole::text));
    colors.setColor(QPalette::Highlight, color(ColorRole::selection));
    setPalette(colors);
}

QString TextArea::text() const {
    return withLineFeeds(document()->toRawText());
}

void TextArea::setPlaceholder(const QString& placeholder, ColorRole role) {
    m_placeholder = placeholder;
    m_placeholderRole = role;
    describeAloud();
    viewport()->update();
}

void TextArea::setColor(ColorRole role) {
    if (std::exchange(m_role, role) != role)
        followTheme();
}

void TextArea::setNote(const QString& note) {
    m_note = note;
    describeAloud();
}

// While there is a text, a screen reader must not read the placeholder as its description.
void TextArea::describeAloud() {
    setAccessibleDescription(document()->isEmpty() ? m_placeholder : m_note);
}

void TextArea::setScrollFrame(QWidget* frame) {
    m_scrollBar->setFrame(frame);
}

void TextArea::prepareFor(const QString& text) {
    if (!hasEndlessWord(text))
        return;
    m_hadEndlessWord = true;
    setWordWrapMode(QTextOption::WrapAnywhere);
}

void TextArea::withAnyText(const std::function<void()>& change) {
    if (!m_hadEndlessWord) {
        change();
        return;
    }
    setWordWrapMode(QTextOption::WrapAnywhere);
    change();
    if (!hasEndlessWord(text()))
        setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
}

void TextArea::replaceText(const QString& text) {
    prepareFor(text);
    if (isComposing())
        QGuiApplication::inputMethod()->reset();
    QTextCursor cursor(document());
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
    setTextCursor(cursor);
    // Not earlier: changing the wrap mode would lay out the old text once more, which may be one endless
    // word.
    if (!hasEndlessWord(text))
        setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
}

bool TextArea::isComposing() const {
    const QTextLayout* layout = textCursor().block().layout();
    return layout != nullptr && !layout->preeditAreaText().isEmpty();
}

void TextArea::paintEvent(QPaintEvent* event) {
    if (!m_placeholder.isEmpty() && document()->isEmpty() && !isComposing()) {
        QPainter painter(viewport());
        const qreal margin = document()->documentMargin();
        const qreal top = document()->rootFrame()->frameFormat().topMargin() + documentBaseline(m_style) -
            baselineOf(m_style, devicePixelRatioF());
        paintText(painter, QRectF(margin, top, viewport()->width() - 2 * margin, m_style.line), m_style,
            color(m_placeholderRole), m_placeholder);
    }
    QTextEdit::paintEvent(event);
}

void TextArea::wheelEvent(QWheelEvent* event) {
    // With Control, Qt would change the text size of a read-only area.
    if ((event->modifiers() & Qt::ControlModifier) == 0)
        QTextEdit::wheelEvent(event);
}

QMimeData* TextArea::createMimeDataFromSelection() const {
    auto* data = new QMimeData;
    data->setText(withLineFeeds(textCursor().selectedText()));
    return data;
}

void TextArea::contextMenuEvent(QContextMenuEvent* event) {
    openEditMenu(this, event->pos(),
        {.isWritable = !isReadOnly(),
            .canUndo = document()->isUndoAvailable(),
            .canCopy = textCursor().hasSelection(),
            .isEmpty = document()->isEmpty()});
}

}  // namespace tralio
