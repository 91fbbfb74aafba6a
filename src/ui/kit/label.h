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
    /// Sets the text; if it has changed, screen readers announce it.
    void setNews(const QString& text);
    void setStyle(const TextStyle& style);
    void setColor(ColorRole role);
    void setAlignment(Qt::Alignment alignment);

    /// Limits a wrapping text to this many lines, the last of which ends in an ellipsis where it does not
    /// fit; 0 means no limit.
    void setMaximumLines(int lines);
    void setWraps() { setMaximumLines(0); }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return m_maximumLines != 1; }
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// Breaks the text into lines of a width, at least as far as it is visible. Returns the number of visible
    /// lines.
    int lay(QTextLayout& layout, qreal width) const;
    /// Breaks the first `length` characters into lines. Returns their number, at most one more than is
    /// visible.
    int lay(QTextLayout& layout, qreal width, qsizetype length) const;
    void changed();

    QString m_text;
    TextStyle m_style;
    ColorRole m_role;
    Qt::Alignment m_alignment = Qt::AlignLeft;
    int m_maximumLines = 1;
    mutable QVarLengthArray<QSize, 4> m_laidSizes;  ///< widths that layouts asked for, with their heights
};

/// The part of a message from outside that a label shows. An error page may be very long: its beginning is
/// informative, and laying out all of it would take seconds.
[[nodiscard]] inline QString beginningOfMessage(const QString& message, qsizetype longest = 600) {
    return shortened(message, longest);
}

}  // namespace tralio
