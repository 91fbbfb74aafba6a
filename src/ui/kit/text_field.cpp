#include "ui/kit/text_field.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>

#include <utility>

#include "common/text_limit.h"
#include "hotkeys/pasteboard.h"
#include "ui/kit/edit_menu.h"
#include "ui/kit/painting.h"
#include "ui/kit/theme.h"

namespace tralio {
namespace {

constexpr int fieldHeight = 28;
constexpr int fieldPadding = 8;
constexpr int toolkitPadding = 2;  // QLineEdit adds it to its text margins
constexpr int fixedWidthRise = 2;  // this font has more room above its letters than below

}  // namespace

TextField::TextField(Face face, Pasteboard* pasteboard, QWidget* parent)
    : QLineEdit(parent), m_pasteboard(pasteboard) {
    setFrame(false);
    setFont(fontFor(face == Face::fixedWidth ? text::fixedWidth : text::caption));
    setTextMargins(fieldPadding - toolkitPadding, 0, fieldPadding - toolkitPadding,
        face == Face::fixedWidth ? fixedWidthRise : 0);
    setFixedHeight(fieldHeight);
    connect(&Theme::current(), &Theme::changed, this, &TextField::followTheme);
    followTheme();
    connect(this, &QLineEdit::textChanged, this, &TextField::tell);  // not every edit is a textEdited
}

bool TextField::event(QEvent* event) {
    // The toolkit's undo of a masked text empties it.
    if (echoMode() != Normal &&
        (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress)) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if (key.matches(QKeySequence::Undo) || key.matches(QKeySequence::Redo)) {
            event->ignore();
            return false;
        }
    }
    return QLineEdit::event(event);
}

void TextField::followTheme() {
    QPalette colors = palette();
    colors.setColor(QPalette::Base, Qt::transparent);
    colors.setColor(QPalette::Text, color(ColorRole::text));
    colors.setColor(QPalette::PlaceholderText, color(ColorRole::placeholder));
    colors.setColor(QPalette::HighlightedText, color(ColorRole::text));
    colors.setColor(QPalette::Highlight, color(ColorRole::selection));
    QColor faded = color(ColorRole::text);
    faded.setAlphaF(0.4F);
    colors.setColor(QPalette::Disabled, QPalette::Text, faded);
    setPalette(colors);
}

QSize TextField::sizeHint() const {
    return {QLineEdit::sizeHint().width(), fieldHeight};
}

void TextField::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        if (!isEnabled())
            painter.setOpacity(0.4);
        paintFill(painter, rect(), radius::control, color(ColorRole::textBackground));
        if (hasFocus()) {
            paintEdge(painter, rect(), radius::control, 2, color(ColorRole::accentIcon));
        } else {
            paintEdge(painter, rect(), radius::control, 1,
                color(m_hovered && isEnabled() ? ColorRole::fieldHoverEdge : ColorRole::border25));
        }
    }
    QLineEdit::paintEvent(event);
}

QString TextField::shownText() const {
    return text().insert(cursorPosition(), m_composed);
}

void TextField::inputMethodEvent(QInputMethodEvent* event) {
    m_composed = event->preeditString();
    QLineEdit::inputMethodEvent(event);
    tell();
}

void TextField::setText(const QString& text) {
    if (!std::exchange(m_composed, {}).isEmpty())
        QGuiApplication::inputMethod()->reset();
    m_told = text.left(maxLength());  // as much as is taken
    QLineEdit::setText(text);
}

// Input methods also send events without a change, even to a field that has just got the focus.
void TextField::tell() {
    const QString now = shownText();
    if (std::exchange(m_told, now) != now)
        Q_EMIT edited(now);
}

void TextField::enterEvent(QEnterEvent* event) {
    m_hovered = true;
    update();
    QLineEdit::enterEvent(event);
}

void TextField::leaveEvent(QEvent* event) {
    m_hovered = false;
    update();
    QLineEdit::leaveEvent(event);
}

void TextField::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Paste) && !isReadOnly())
        paste();
    else
        QLineEdit::keyPressEvent(event);
}

void TextField::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::MiddleButton || isReadOnly() || !m_pasteboard) {
        QLineEdit::mouseReleaseEvent(event);
    } else if (m_composed.isEmpty()) {
        deselect();
        insertForeign(m_pasteboard->selectedString());
    }
}

void TextField::paste() {
    if (m_pasteboard)
        insertForeign(m_pasteboard->string());
    else
        QLineEdit::paste();
}

void TextField::insertForeign(const std::optional<QString>& text) {
    if (text && !text->isEmpty() && !isTooLong(*text))
        insert(*text);
}

void TextField::contextMenuEvent(QContextMenuEvent* event) {
    const bool isLegible = echoMode() == Normal;
    openEditMenu(this, event->pos(),
        {.isWritable = !isReadOnly(),
            .canUndo = isUndoAvailable() && isLegible,
            .canCopy = hasSelectedText() && isLegible,  // a masked text must not be copied
            .isEmpty = text().isEmpty()});
}

}  // namespace tralio
