#pragma once

#include <QPainter>
#include <QString>
#include <QTextLayout>

#include "ui/kit/text_style.h"

namespace tralio {

/// Fills a rounded rectangle with a colour or a gradient.
void paintFill(QPainter& painter, const QRectF& area, qreal radius, const QBrush& brush);

/// Draws a line of `width` along the inner edge of a rounded rectangle.
void paintEdge(QPainter& painter, const QRectF& area, qreal radius, qreal width, const QColor& color);

/// The width of one line of text, in whole pixels.
[[nodiscard]] int textWidth(const TextStyle& style, const QString& text);

/// Paints one line of text: vertically centred in `area` by its line height, horizontally by `alignment`, and
/// shortened with an ellipsis when it is too wide. Capitals with two marks that would exceed the area move
/// the line down, if there is room.
void paintText(QPainter& painter, const QRectF& area, const TextStyle& style, const QColor& color,
    const QString& text, Qt::Alignment alignment = Qt::AlignLeft);

enum class EmojiSize { asElsewhere, asLetters };

/// The same for one of several lines, which is never moved down, to keep the line spacing.
void paintTextLine(QPainter& painter, const QRectF& line, const TextStyle& style, const QColor& color,
    const QString& text, Qt::Alignment alignment = Qt::AlignLeft,
    EmojiSize emojiSize = EmojiSize::asElsewhere);

/// The emoji in a text, with formats that reserve the room of their painted size. None in a text with
/// right-to-left letters, whose order depends on the whole text. The room is letter spacing: a larger font in
/// the layout would load the pictures once more in that size.
///
/// WORKAROUND: Qt (6.4 and 6.8) scales a bitmap emoji down to the font size, while other programs draw it as
/// large as the font specifies.
[[nodiscard]] QList<QTextLayout::FormatRange> emojiRanges(const QString& text, const TextStyle& style);

/// How many pixels the ink of `text` is higher than a line of its style: 0 for nearly every text. It depends
/// on the font: in Inter 4 a capital with two marks beside one with a dot below exceeds the line.
[[nodiscard]] int inkBeyondLine(const TextStyle& style, const QString& text);

/// How many whole pixels `text` must move down to be fully visible in `area`; 0 for nearly every text.
[[nodiscard]] int shiftIntoArea(const QRectF& area, const TextStyle& style, const QString& text);

}  // namespace tralio
