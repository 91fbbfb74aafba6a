#include "ui/kit/painting.h"

#include <QFontMetricsF>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tralio {
namespace {

/// Fills without a pen and with antialiasing, and restores the painter's state.
template <typename Draw>
void withBrush(QPainter& painter, const QBrush& brush, Draw draw) {
    if (brush.style() == Qt::SolidPattern && brush.color().alpha() == 0)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    draw();
    painter.restore();
}

}  // namespace

void paintFill(QPainter& painter, const QRectF& area, qreal radius, const QBrush& brush) {
    withBrush(
        painter, brush, [&] { painter.drawRoundedRect(area, radius, radius); });
}

void paintEdge(QPainter& painter, const QRectF& area, qreal radius, qreal width, const QColor& color) {
    withBrush(
        painter, color,
        [&] {
            const qreal inner = std::max(0.0, radius - width);
            QPainterPath ring;
            ring.setFillRule(Qt::OddEvenFill);
            ring.addRoundedRect(area, radius, radius);
            ring.addRoundedRect(area.adjusted(width, width, -width, -width), inner, inner);
            painter.drawPath(ring);
        });
}

int textWidth(const TextStyle& style, const QString& text) {
    return int(std::ceil(QFontMetricsF(fontFor(style)).horizontalAdvance(text)));
}

namespace {

bool isEmojiUnit(QChar unit) {
    constexpr char16_t joiner = 0x200D;
    constexpr char16_t emojiSelector = 0xFE0F;
    return (unit >= QChar(0xD83C) && unit <= QChar(0xD83E)) || unit.isLowSurrogate() ||
        unit == QChar(joiner) || unit == QChar(emojiSelector);
}

int emojiPixels(const QFont& font) {
    return qRound(font.pixelSize() * 128 / 109.0);  // the size of a bitmap emoji per pixel of its font size
}

bool isRightToLeft(QChar letter) {
    return letter.direction() == QChar::DirR || letter.direction() == QChar::DirAL;
}

/// A stretch of text in one font.
struct Run {
    QString text;
    QFont font;
    qreal width;
};

QList<Run> runsOf(const QString& text, const TextStyle& style, EmojiSize emojiSize) {
    QList<Run> runs;
    const auto add = [&runs](const QString& run, const QFont& font) {
        if (!run.isEmpty())
            runs.push_back({run, font, QFontMetricsF(font).horizontalAdvance(run)});
    };
    const QFont font = fontFor(style);
    QFont larger = font;
    larger.setPixelSize(emojiPixels(font));
    qsizetype begin = 0;
    const auto emojis =
        emojiSize == EmojiSize::asLetters ? QList<QTextLayout::FormatRange>() : emojiRanges(text, style);
    for (const QTextLayout::FormatRange& emoji : emojis) {
        add(text.sliced(begin, emoji.start - begin), font);
        add(text.sliced(emoji.start, emoji.length), larger);
        begin = emoji.start + emoji.length;
    }
    add(text.sliced(begin), font);
    return runs;
}

qreal widthOf(const QList<Run>& runs) {
    return std::accumulate(
        runs.cbegin(), runs.cend(), 0.0, [](qreal sum, const Run& run) { return sum + run.width; });
}

/// Controls have no glyphs but boxes.
QString withoutControls(QString text) {
    text.replace(u'\t', u' ');
    return text.removeIf([](QChar character) { return character.category() == QChar::Other_Control; });
}

/// As much of the text as fits, with an ellipsis if that is not all.
QList<Run> fittingRuns(const QString& text, const TextStyle& style, qreal width, EmojiSize emojiSize) {
    QList<Run> runs = runsOf(text, style, emojiSize);
    const QFontMetricsF metrics(fontFor(style));
    qreal room = width;
    for (qreal taken = widthOf(runs); taken > std::ceil(width) && room > 0; taken = widthOf(runs)) {
        runs = runsOf(metrics.elidedText(text, Qt::ElideRight, room), style, emojiSize);
        room -= std::max(1.0, widthOf(runs) - width);
    }
    return runs;
}

qreal topOfLine(const QRectF& area, const TextStyle& style) {
    return area.top() + std::floor((area.height() - style.line) / 2);
}

}  // namespace

QList<QTextLayout::FormatRange> emojiRanges(const QString& text, const TextStyle& style) {
    QList<QTextLayout::FormatRange> ranges;
    if (std::ranges::any_of(text, isRightToLeft))
        return ranges;
    for (qsizetype at = 0; at + 1 < text.size(); ++at) {
        if (text[at] < QChar(0xD83C) || text[at] > QChar(0xD83E))
            continue;
        const auto end = std::find_if_not(text.cbegin() + at, text.cend(), isEmojiUnit) - text.cbegin();
        QFont wider = fontFor(style);
        wider.setLetterSpacing(QFont::PercentageSpacing, 100.0 * emojiPixels(wider) / wider.pixelSize());
        QTextCharFormat format;
        format.setFont(wider);
        ranges.push_back({int(at), int(end - at), format});
        at = end - 1;
    }
    return ranges;
}

void paintTextLine(QPainter& painter, const QRectF& line, const TextStyle& style, const QColor& color,
    const QString& text, Qt::Alignment alignment, EmojiSize emojiSize) {
    const QList<Run> runs = fittingRuns(withoutControls(text), style, line.width(), emojiSize);
    qreal x = line.left();
    if (alignment & Qt::AlignHCenter)
        x += (line.width() - widthOf(runs)) / 2;
    else if (alignment & Qt::AlignRight)
        x += line.width() - widthOf(runs);
    painter.setPen(color);
    const qreal baseline = topOfLine(line, style) + baselineOf(style, painter.device()->devicePixelRatioF());
    for (const Run& run : runs) {
        painter.setFont(run.font);
        painter.drawText(QPointF(x, baseline), run.text);
        x += run.width;
    }
}

int inkBeyondLine(const TextStyle& style, const QString& text) {
    // Only such letters exceed the line; shaping every text again for this would be noticeably slow.
    const bool hasMarkedCapital = std::any_of(text.cbegin(), text.cend(), [](QChar letter) {
        const bool isVietnamese = letter >= QChar(0x1EA0) && letter <= QChar(0x1EF9);
        return (isVietnamese && letter.isUpper()) || letter.isMark();
    });
    if (!hasMarkedCapital)
        return 0;
    const QRectF ink = QFontMetricsF(fontFor(style)).tightBoundingRect(text);
    return std::max(0, int(std::ceil(ink.bottom()) - std::floor(ink.top())) - style.line);
}

int shiftIntoArea(const QRectF& area, const TextStyle& style, const QString& text) {
    const QRectF ink = QFontMetricsF(fontFor(style)).tightBoundingRect(text);
    const qreal baseline = topOfLine(area, style) + baselineOf(style, 1);
    const qreal missing = std::ceil(area.top() - (baseline + ink.top()));
    const qreal room = std::floor(area.bottom() - (baseline + ink.bottom()));
    return int(std::clamp(missing, 0.0, std::max(0.0, room)));
}

void paintText(QPainter& painter, const QRectF& area, const TextStyle& style, const QColor& color,
    const QString& text, Qt::Alignment alignment) {
    const int shift = shiftIntoArea(area, style, text);
    paintTextLine(painter, area.translated(0, shift), style, color, text, alignment);
}

}  // namespace tralio
