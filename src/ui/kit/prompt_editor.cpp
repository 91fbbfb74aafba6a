#include "ui/kit/prompt_editor.h"

#include <QEvent>

#include <algorithm>
#include <utility>

#include "ui/kit/painting.h"
#include "ui/kit/stack.h"
#include "ui/kit/theme.h"

namespace tralio {
namespace {

constexpr int editorHeight = 60;
constexpr int promptPadding = 4;
constexpr int above = 2;      // the part of the padding that belongs to the text and scrolls with it
constexpr int below = 5;      // so that only whole lines show
constexpr int thumbRoom = 8;  // keeps the thumb beside the text

class Editor final : public TextEditor {
public:
    explicit Editor(Binding<QString> text)
        : TextEditor(text::promptEditor, {promptPadding, above}, std::move(text)) {
        setTabChangesFocus(true);
    }
};

}  // namespace

PromptEditor::PromptEditor(Binding<QString> text, QWidget* parent)
    : QWidget(parent), m_editor(new Editor(std::move(text))) {
    filled(this,
        column({.padding = {promptPadding, promptPadding - above, promptPadding + thumbRoom, below}},
            {m_editor}));
    setFixedHeight(editorHeight);
    setFocusProxy(m_editor);
    m_editor->moveCursor(QTextCursor::Start);  // shows the beginning
    m_editor->setScrollFrame(this);
    m_editor->installEventFilter(this);
}

void PromptEditor::refresh() {
    const int caret = m_editor->textCursor().position();
    if (m_editor->refresh()) {
        QTextCursor cursor(m_editor->document());
        cursor.setPosition(std::min(caret, cursor.document()->characterCount() - 1));
        m_editor->setTextCursor(cursor);
    }
}

void PromptEditor::setSpokenCaption(const QString& caption) {
    m_editor->setAccessibleName(caption);
}

void PromptEditor::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!isEnabled())
        painter.setOpacity(0.4);
    paintFill(painter, rect(), radius::control, color(ColorRole::textBackground));
    if (m_editor->hasFocus()) {
        paintEdge(painter, rect(), radius::control, 2, color(ColorRole::accentIcon));
    } else {
        paintEdge(painter, rect(), radius::control, 1,
            color(m_hovered && isEnabled() ? ColorRole::fieldHoverEdge : ColorRole::border20));
    }
}

void PromptEditor::enterEvent(QEnterEvent* event) {
    m_hovered = true;
    update();
    QWidget::enterEvent(event);
}

void PromptEditor::leaveEvent(QEvent* event) {
    m_hovered = false;
    update();
    QWidget::leaveEvent(event);
}

bool PromptEditor::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        update();
    return QWidget::eventFilter(watched, event);
}

}  // namespace tralio
