#include "ui/kit/painting.h"

#include <QFontMetricsF>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tralio {
namespace {

/// Fills without a pen, smoothly, and leaves the painter as it was.
template <typename Draw>
void withBrush(QPainter& painter, const QColor& color, Draw draw) {
    if (color.alpha() == 0) {
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    draw();
    painter.restore();
}

}  // namespace

void paintFill(QPainter& painter, const QRectF& area, qreal radius, const QColor& color) {
    withBrush(painter, color, [&] { painter.drawRoundedRect(area, radius, radius); });
}

void paintEdge(QPainter& painter, const QRectF& area, qreal radius, qreal width, const QColor& color) {
    withBrush(painter, color, [&] {
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

void paintText(QPainter& painter, const QRectF& area, const TextStyle& style, const QColor& color,
               const QString& text, Qt::Alignment alignment) {
    const QFont font = fontFor(style);
    const QFontMetricsF metrics(font);
    QString shown = text;
    qreal width = metrics.horizontalAdvance(text);
    if (width > std::ceil(area.width())) {
        shown = metrics.elidedText(text, Qt::ElideRight, area.width());
        width = metrics.horizontalAdvance(shown);
    }
    qreal x = area.left();
    if (alignment & Qt::AlignHCenter) {
        x += (area.width() - width) / 2;
    } else if (alignment & Qt::AlignRight) {
        x += area.width() - width;
    }
    const qreal y = area.top() + std::floor((area.height() - style.line) / 2) + baselineOf(style);
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(QPointF(x, y), shown);
}

}  // namespace tralio
