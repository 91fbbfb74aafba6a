#pragma once

#include <QTextLayout>
#include <QVarLengthArray>
#include <QWidget>

#include "common/excerpt.h"
#include "ui/kit/colors.h"
#include "ui/kit/text_style.h"

namespace tralio {

/// Read-only text. Lines have the line height of the style, even where a fallback font is taller; where
/// accented capitals need more, the label grows by the missing pixels. A single-line label ends in an
/// ellipsis where it does not fit.
class Label final : public QWidget {
    Q_OBJECT

public:
    explicit Label(const QString& text, const TextStyle& style = text::caption,
        ColorRole role = ColorRole::text, QWidget* parent = nullptr);

    [[nodiscard]] const QString& text() const { return m_text; }
    void setText(const QString& text);
    /// Another text than the present one is told to screen readers, too.
    void setNews(const QString& text);
    void setStyle(const TextStyle& style);
    void setColor(ColorRole role);
    void setAlignment(Qt::Alignment alignment);

    /// Lets the text wrap to at most this many lines, the last one shortened where it does not fit; 0 is no
    /// limit.
    void setMaximumLines(int lines);
    void setWraps() { setMaximumLines(0); }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return m_maximumLines != 1; }
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// Breaks the text for a width, at least as far as it shows, and gives the number of lines that are
    /// shown.
    int lay(QTextLayout& layout, qreal width) const;
    /// Breaks the start of the text, of this length, and gives the number of lines, at most one more than are
    /// shown.
    int lay(QTextLayout& layout, qreal width, qsizetype length) const;
    void changed();

    QString m_text;
    TextStyle m_style;
    ColorRole m_role;
    Qt::Alignment m_alignment = Qt::AlignLeft;
    int m_maximumLines = 1;
    mutable QVarLengthArray<QSize, 4> m_laidSizes;  ///< widths that were asked for, with their heights
};

/// What a label shows of a message from outside. An error page may be as long as a book: its beginning tells
/// what there is to tell, and all of it would take seconds to lay out.
[[nodiscard]] inline QString beginningOfMessage(const QString& message, qsizetype longest = 600) {
    return shortened(message, longest);
}

}  // namespace tralio
