#include "ui/kit/painting.h"

#include <QFontMetricsF>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

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
    qreal x = line.left();
    if (alignment & Qt::AlignHCenter)
        x += (line.width() - width) / 2;
    else if (alignment & Qt::AlignRight)
        x += line.width() - width;
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(QPointF(x, topOfLine(line, style) + baselineOf(style)), shown);
}

int shiftIntoArea(const QRectF& area, const TextStyle& style, const QString& text) {
    const QRectF ink = QFontMetricsF(fontFor(style)).tightBoundingRect(text);
    const qreal baseline = topOfLine(area, style) + baselineOf(style);
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
