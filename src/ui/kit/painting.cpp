#include "ui/kit/painting.h"

#include <QFontMetricsF>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tralio {
namespace {

/// Fills without a pen, smoothly, and leaves the painter as it was.
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

/// A stretch of text in one font.
struct Run {
    QString text;
    QFont font;
    qreal width;
};

/// WORKAROUND: Qt (6.4 and 6.8) fits the picture of an emoji into the size of the font, and every other
/// program has it stand out as its font says.
QList<Run> runsOf(const QString& text, const QFont& font) {
    QList<Run> runs;
    const auto add = [&runs](const QString& run, const QFont& runFont) {
        if (!run.isEmpty())
            runs.push_back({run, runFont, QFontMetricsF(runFont).horizontalAdvance(run)});
    };
    const auto isEmoji = [&text](qsizetype at) {
        return text[at] >= QChar(0xD83C) && text[at] <= QChar(0xD83E) && at + 1 < text.size();
    };
    qsizetype begin = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (!isEmoji(at))
            continue;
        qsizetype end = at;
        while (end < text.size() && isEmojiUnit(text[end]))
            ++end;
        QFont larger = font;
        larger.setPixelSize(qRound(font.pixelSize() * 128 / 109.0));  // of a picture and of its font
        add(text.sliced(begin, at - begin), font);
        add(text.sliced(at, end - at), larger);
        begin = end;
        at = end - 1;
    }
    add(text.sliced(begin), font);
    return runs;
}

qreal topOfLine(const QRectF& area, const TextStyle& style) {
    return area.top() + std::floor((area.height() - style.line) / 2);
}

}  // namespace

void paintTextLine(QPainter& painter, const QRectF& line, const TextStyle& style, const QColor& color,
    const QString& text, Qt::Alignment alignment) {
    const QFont font = fontFor(style);
    const QFontMetricsF metrics(font);
    QString shown = text;
    qreal width = metrics.horizontalAdvance(text);
    if (width > std::ceil(line.width())) {
        shown = metrics.elidedText(text, Qt::ElideRight, line.width());
        width = metrics.horizontalAdvance(shown);
    }
    const QList<Run> runs = runsOf(shown, font);
    if (runs.size() > 1)
        width = std::accumulate(
            runs.cbegin(), runs.cend(), 0.0, [](qreal sum, const Run& run) { return sum + run.width; });
    qreal x = line.left();
    if (alignment & Qt::AlignHCenter)
        x += (line.width() - width) / 2;
    else if (alignment & Qt::AlignRight)
        x += line.width() - width;
    painter.setPen(color);
    const qreal baseline = topOfLine(line, style) + baselineOf(style, painter.device()->devicePixelRatioF());
    for (const Run& run : runs) {
        painter.setFont(run.font);
        painter.drawText(QPointF(x, baseline), run.text);
        x += run.width;
    }
}

int inkBeyondLine(const TextStyle& style, const QString& text) {
    // Only these are that high; to shape every text once more for it would be felt.
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
