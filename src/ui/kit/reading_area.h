#pragma once

#include "ui/kit/text_area.h"

namespace tralio {

/// A result to read: selectable and scrollable, but not editable.
class ReadingArea final : public TextArea {
    Q_OBJECT

public:
    explicit ReadingArea(QWidget* parent = nullptr);

    /// Shows another text from its beginning; for the same text, selection and scroll position stay.
    void setText(const QString& text);
    /// Dims the text if it is not the result for the present input; screen readers call it the former
    /// translation.
    void setStale(bool stale);

    /// The minimum height: its owner gives it the room that is left.
    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    /// The keyboard focus has come or gone; the owner shows it around the area.
    void focusShown(bool shows);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool event(QEvent* event) override;

private:
    void showFocus(bool shows);

    QString m_shown;
    bool m_showsFocus = false;
};

}  // namespace tralio
