#include "ui/kit/reading_area.h"

#include <QFocusEvent>

#include "ui/kit/painting.h"
#include "ui/kit/theme.h"

namespace tralio {

ReadingArea::ReadingArea(QWidget* parent) : TextArea(text::body, {6, 2}, parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

void ReadingArea::setText(const QString& text) {
    if (text != TextArea::text()) {
        replaceText(text);
        moveCursor(QTextCursor::Start);
    }
}

void ReadingArea::paintEvent(QPaintEvent* event) {
    TextArea::paintEvent(event);
    if (m_showsFocusRing) {
        QPainter painter(viewport());
        paintEdge(painter, viewport()->rect(), radius::control, 2, color(ColorRole::accentIcon));
    }
}

void ReadingArea::focusInEvent(QFocusEvent* event) {
    m_showsFocusRing = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    TextArea::focusInEvent(event);
    viewport()->update();
}

void ReadingArea::focusOutEvent(QFocusEvent* event) {
    m_showsFocusRing = false;
    TextArea::focusOutEvent(event);
    viewport()->update();
}

}  // namespace tralio
