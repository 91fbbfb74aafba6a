#include "ui/kit/multiline_enter_input_view.h"

#include <QKeyEvent>

#include <utility>

#include "ui/kit/keyboard_use.h"

namespace tralio {

MultilineEnterInputView::MultilineEnterInputView(
    Binding<QString> text, std::function<void()> onSubmit, QWidget* parent)
    : TextEditor(text::body, {4, 3}, std::move(text), parent), m_onSubmit(std::move(onSubmit)) {}

void MultilineEnterInputView::keyPressEvent(QKeyEvent* event) {
    const bool leaves = event->key() == Qt::Key_Backtab ||
        (event->key() == Qt::Key_Tab && (event->modifiers() & Qt::ControlModifier) != 0);
    const bool breaksLine = (event->modifiers() & (Qt::ShiftModifier | Qt::AltModifier)) != 0;
    if (leaves) {
        // QTextEdit's own override stays, since Tab is a character of the text.
        QWidget::focusNextPrevChild(event->key() == Qt::Key_Tab);  // NOLINT(bugprone-parent-virtual-call)
    } else if (!isReturn(*event) || isComposing() || breaksLine) {
        TextEditor::keyPressEvent(event);
    } else if (!isRepeat(*event)) {
        m_onSubmit();
    }
}

}  // namespace tralio
