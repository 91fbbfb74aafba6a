#pragma once

#include "ui/kit/text_area.h"

namespace tralio {

/// A result to read: selectable, scrolling, not to be edited.
class ReadingArea final : public TextArea {
    Q_OBJECT

public:
    explicit ReadingArea(QWidget* parent = nullptr);

    /// Shows another text from its beginning; the same text keeps its selection and place.
    void setText(const QString& text);
    /// What stands there is not the result of what the user now asks for.
    void setStale(bool stale);

    /// As high as it has to be: it takes what its owner has to spare.
    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    /// The keyboard focus has come, to be shown around the area, or has gone.
    void focusShown(bool shows);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void showFocus(bool shows);

    QString m_shown;
    bool m_showsFocus = false;
};

}  // namespace tralio
