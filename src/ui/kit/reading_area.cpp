#include "ui/kit/reading_area.h"

#include <QFocusEvent>

#include <utility>

#include "ui/kit/keyboard_use.h"

namespace tralio {

using namespace Qt::StringLiterals;

ReadingArea::ReadingArea(QWidget* parent) : TextArea(text::body, {6, 1}, parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

void ReadingArea::setText(const QString& text) {
    // Not compared with the document's text, whose line breaks are other characters.
    if (text == m_shown)
        return;
    m_shown = text;
    replaceText(text);
    moveCursor(QTextCursor::Start);
}

void ReadingArea::setStale(bool stale) {
    setColor(stale ? ColorRole::secondary : ColorRole::text);
    setNote(stale ? u"Bản dịch trước đó"_s : QString());
}

QSize ReadingArea::sizeHint() const {
    return {TextArea::sizeHint().width(), minimumHeight()};
}

void ReadingArea::focusInEvent(QFocusEvent* event) {
    if (!isPassingFocus(event->reason()))
        showFocus(isKeyboardFocus(event->reason()));
    TextArea::focusInEvent(event);
}

void ReadingArea::focusOutEvent(QFocusEvent* event) {
    if (!isPassingFocus(event->reason()))
        showFocus(false);
    TextArea::focusOutEvent(event);
}

bool ReadingArea::event(QEvent* event) {
    // Given up while the window was inactive, the focus goes without an event.
    if (event->type() == QEvent::WindowActivate && window()->focusWidget() != this)
        showFocus(false);
    return TextArea::event(event);
}

void ReadingArea::showFocus(bool shows) {
    if (std::exchange(m_showsFocus, shows) != shows)
        Q_EMIT focusShown(shows);
}

}  // namespace tralio
