#pragma once

#include <QPainter>
#include <QString>
#include <QTextLayout>

#include "ui/kit/text_style.h"

namespace tralio {

/// Fills a rounded rectangle with a colour or a gradient.
void paintFill(QPainter& painter, const QRectF& area, qreal radius, const QBrush& brush);

/// Draws a line of `width` along the inside of the edge of a rounded rectangle, over what is there.
void paintEdge(QPainter& painter, const QRectF& area, qreal radius, qreal width, const QColor& color);

/// Width of one line of text in whole pixels.
[[nodiscard]] int textWidth(const TextStyle& style, const QString& text);

/// Paints one line of text: centred from top to bottom of `area` by its line height, from left to right by
/// `alignment`, and shortened with an ellipsis when it is too wide. Capitals with two marks that would stick
/// out of the area move the line down, where there is room.
void paintText(QPainter& painter, const QRectF& area, const TextStyle& style, const QColor& color,
    const QString& text, Qt::Alignment alignment = Qt::AlignLeft);

enum class EmojiSize { asElsewhere, asLetters };

/// The same for one line of several, which keep their distance.
void paintTextLine(QPainter& painter, const QRectF& line, const TextStyle& style, const QColor& color,
    const QString& text, Qt::Alignment alignment = Qt::AlignLeft,
    EmojiSize emojiSize = EmojiSize::asElsewhere);

/// Where emoji stand in a text, with the room that each takes as large as it is painted; nowhere in a text
/// that has letters from right to left, whose order goes by the whole. The room is made by spacing: a layout
/// would load their pictures once more for a font of that size.
///
/// WORKAROUND: Qt (6.4 and 6.8) fits the picture of an emoji into the size of the font, and every other
/// program has it stand out as its font says.
[[nodiscard]] QList<QTextLayout::FormatRange> emojiRanges(const QString& text, const TextStyle& style);

/// By how many pixels the ink of `text` is higher than a line of its style: 0 for nearly every text. Fonts
/// differ: in Inter 4 a capital with two marks beside one with a dot below does not fit any more.
[[nodiscard]] int inkBeyondLine(const TextStyle& style, const QString& text);

/// How far `text` has to move down to show whole in `area`, in whole pixels; 0 for nearly every text.
[[nodiscard]] int shiftIntoArea(const QRectF& area, const TextStyle& style, const QString& text);

}  // namespace tralio
