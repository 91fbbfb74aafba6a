#pragma once

#include <QTextEdit>

#include <functional>

#include "ui/kit/colors.h"
#include "ui/kit/text_style.h"

namespace tralio {

class OverlayScrollBar;

/// Scrolling plain text without frame or background: the common base of the input box and the reading area.
/// It keeps every character as given, sets lines at the line height of its style, and copies as plain text.
class TextArea : public QTextEdit {
    Q_OBJECT

public:
    /// The text with line feeds between its lines. QTextEdit's `toPlainText` would turn no-break spaces into
    /// blanks, and U+2028 into line feeds.
    [[nodiscard]] QString text() const;

    /// Shown at the start of the text while that is empty.
    void setPlaceholder(const QString& placeholder, ColorRole role = ColorRole::placeholder);

    void setColor(ColorRole role);
    /// The accessible description of the text.
    void setNote(const QString& note);

    /// Places the scroll thumb at the edge of `frame`, a widget around the area, so that the thumb is in the
    /// padding and not over the text.
    void setScrollFrame(QWidget* frame);

    /// As QTextEdit::undo, for any text.
    void undo() {
        withAnyText([this] { QTextEdit::undo(); });
    }

protected:
    /// `inset` is the distance of the text from the edges, in logical pixels: horizontal, and at the top.
    TextArea(const TextStyle& style, const QSize& inset, QWidget* parent = nullptr);

    /// Replaces the whole content in one undoable step. The caret goes to the end.
    void replaceText(const QString& text);

    /// Lets lines break anywhere if `text` has an endless word. Call before any text is inserted.
    void prepareFor(const QString& text);

    /// Runs `change` (undo or redo), which may bring in any text: only afterwards is it known which.
    void withAnyText(const std::function<void()>& change);

    /// Whether an input method is composing text that is not in the document yet.
    [[nodiscard]] bool isComposing() const;

    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;

    [[nodiscard]] const TextStyle& textStyle() const { return m_style; }

private:
    void placeText(const QSize& inset);
    void followTheme();
    void describeAloud();

    TextStyle m_style;
    OverlayScrollBar* m_scrollBar;
    ColorRole m_role = ColorRole::text;
    bool m_hadEndlessWord = false;
    QString m_note;
    QString m_placeholder;
    ColorRole m_placeholderRole = ColorRole::placeholder;
};

}  // namespace tralio
