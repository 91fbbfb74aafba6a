#pragma once

#include <QPainter>
#include <QString>

#include "ui/kit/text_style.h"

namespace tralio {

/// Fills a rounded rectangle.
void paintFill(QPainter& painter, const QRectF& area, qreal radius, const QColor& color);

/// Draws a line of `width` along the inside of the edge of a rounded rectangle, over what is there.
void paintEdge(QPainter& painter, const QRectF& area, qreal radius, qreal width, const QColor& color);

/// Width of one line of text in whole pixels.
[[nodiscard]] int textWidth(const TextStyle& style, const QString& text);

/// Paints one line of text in the painter's place for it: centred from top to bottom of `area` by its line height,
/// from left to right by `alignment`, and shortened with an ellipsis when it is too wide.
void paintText(QPainter& painter, const QRectF& area, const TextStyle& style, const QColor& color,
               const QString& text, Qt::Alignment alignment = Qt::AlignLeft);

}  // namespace tralio
