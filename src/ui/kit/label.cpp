#include "ui/kit/label.h"

#include <QLayout>

#include <algorithm>

#include "hotkeys/shortcut_words.h"
#include "ui/kit/accessibility.h"
#include "ui/kit/painting.h"
#include "ui/kit/theme.h"

namespace tralio {

namespace {

/// The text that a single-line label draws: at most as much as certainly exceeds any window.
QString onOneLine(const QString& text) {
    constexpr qsizetype enough = 1000;
    return shortened(text, enough).replace(u'\n', u' ');
}

}  // namespace

Label::Label(const QString& text, const TextStyle& style, ColorRole role, QWidget* parent)
    : QWidget(parent), m_text(text), m_style(style), m_role(role) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAccessibleName(keysInWords(text));
}

void Label::setText(const QString& text) {
    if (m_text != text) {
        m_text = text;
        setAccessibleName(keysInWords(text));
        changed();
    }
}

void Label::setNews(const QString& text) {
    if (m_text == text)
        return;
    setText(text);
    announce(*this);
}

void Label::setStyle(const TextStyle& style) {
    if (m_style != style) {
        m_style = style;
        changed();
    }
}

void Label::setColor(ColorRole role) {
    m_role = role;
    update();
}

void Label::setAlignment(Qt::Alignment alignment) {
    m_alignment = alignment;
    update();
}

void Label::setMaximumLines(int lines) {
    m_maximumLines = lines;
    // A fixed vertical policy would hold a wrapping text at the height of its size hint, which is one line.
    QSizePolicy policy = lines == 1 ? QSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed)
                                    : QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(lines != 1);
    setSizePolicy(policy);
    changed();
}

void Label::changed() {
    m_laidSizes.clear();
    updateGeometry();
    // Enclosing layouts are updated only with the next event, and not at all while hidden: until then they
    // would measure the old text.
    for (QWidget* owner = parentWidget(); owner != nullptr && !isVisible(); owner = owner->parentWidget()) {
        if (owner->layout() != nullptr) {
            owner->layout()->invalidate();
            owner->layout()->activate();
        }
    }
    update();
}

QSize Label::sizeHint() const {
    // More characters than fit any window; shaping a long text whole is noticeably slow.
    constexpr qsizetype enough = 150;
    const QString start = m_text.left(enough);
    return {textWidth(m_style, start), m_style.line + inkBeyondLine(m_style, start)};
}

QSize Label::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

int Label::heightForWidth(int width) const {
    // Nested layouts ask repeatedly for a few widths.
    for (const QSize& size : m_laidSizes)
        if (size.width() == width)
            return size.height();
    QTextLayout layout;
    const int lines = std::max(1, lay(layout, width));
    const int height = lines * m_style.line + inkBeyondLine(m_style, layout.text());
    if (m_laidSizes.size() == m_laidSizes.capacity())
        m_laidSizes.clear();
    m_laidSizes.append({width, height});
    return height;
}

int Label::lay(QTextLayout& layout, qreal width) const {
    if (m_maximumLines == 0)
        return lay(layout, width, m_text.size());
    // Shaping a long text whole is noticeably slow: only a part is laid out, at least so long that it
    // continues after the last visible line.
    const double narrowLetter = 0.5 * m_style.size;
    auto length = qsizetype((m_maximumLines + 1) * std::max(1.0, width / narrowLetter));
    for (;; length *= 2) {
        const int lines = lay(layout, width, length);
        if (lines > m_maximumLines || length >= m_text.size())
            return std::min(lines, m_maximumLines);
    }
}

int Label::lay(QTextLayout& layout, qreal width, qsizetype length) const {
    QString text = m_text.left(length);
    layout.setText(text.replace(u'\n', QChar::LineSeparator));
    layout.setFont(fontFor(m_style));
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.setFormats(emojiRanges(layout.text(), m_style));
    layout.beginLayout();
    int lines = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        ++lines;
        // Lays out one line more than is shown, so that painting knows whether the last one needs an
        // ellipsis.
        if (m_maximumLines > 0 && lines > m_maximumLines)
            break;
    }
    layout.endLayout();
    return lines;
}

void Label::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_maximumLines == 1) {
        paintText(painter, rect(), m_style, color(m_role), onOneLine(m_text), m_alignment);
        return;
    }
    QTextLayout layout;
    const int lines = lay(layout, width());
    QRectF place(0, 0, width(), m_style.line);
    // As decided for the whole text when it was laid out.
    const EmojiSize emojiSize = layout.formats().isEmpty() ? EmojiSize::asLetters : EmojiSize::asElsewhere;
    if (lines > 0) {
        const int beyond = inkBeyondLine(m_style, layout.text());
        const QString firstLine = m_text.left(layout.lineAt(0).textLength());
        const int above = beyond / 2;  // whole pixels, since the lines are at whole pixels
        place.translate(0, above + shiftIntoArea(place.adjusted(0, 0, 0, beyond), m_style, firstLine));
    }
    for (int i = 0; i < lines; ++i, place.translate(0, m_style.line)) {
        const QTextLine line = layout.lineAt(i);
        const bool goesOn = i + 1 == lines && layout.lineCount() > lines;
        // Where the text is cut off, all the rest that was laid out is passed on; painting shortens it to the
        // width.
        QString rest = m_text.mid(
            line.textStart(), (goesOn ? layout.text().size() - line.textStart() : line.textLength()));
        if (goesOn && layout.text().size() < m_text.size())
            rest += u'…';
        paintTextLine(painter, place, m_style, color(m_role), goesOn ? rest.simplified() : rest.trimmed(),
            m_alignment, emojiSize);
    }
}

}  // namespace tralio
