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

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool m_showsFocusRing = false;
};

}  // namespace tralio
