#pragma once

#include <QBasicTimer>

#include <functional>
#include <optional>
#include <utility>

#include "common/binding.h"
#include "ui/kit/text_area.h"

namespace tralio {

/// A multi-line plain text editor for a text that is stored elsewhere, with the program's own caret. Return
/// inserts a line break; while an input method composes, it only confirms the composition.
class TextEditor : public TextArea {
    Q_OBJECT

public:
    /// Shows the bound text. An equal text leaves caret and selection alone; another one replaces the whole
    /// content in one undoable step, and does not count as an edit. Returns whether it was replaced.
    bool refresh();

    /// The text without the selection: what stays if the selection is replaced.
    [[nodiscard]] QString unselectedText() const;

    /// Hides the caret, for example while a file is dragged over the editor.
    void setCaretShown(bool shown);
    /// Returns what to insert of pasted or dropped content, or nothing. Without this function any text is
    /// inserted that is not too long.
    using TextOf = std::function<std::optional<QString>(const QMimeData& source)>;
    void setTextOf(TextOf textOf) { m_textOf = std::move(textOf); }

protected:
    /// `text` is written on every edit, including changes of a composition, and read by `refresh`.
    TextEditor(const TextStyle& style, const QSize& inset, Binding<QString> text, QWidget* parent = nullptr);

    [[nodiscard]] static bool isReturn(const QKeyEvent& event);

    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    [[nodiscard]] bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void writeText();
    [[nodiscard]] QString shownText() const;
    void confirmComposition();
    void hideToolkitCaret();
    void restartCaret();
    [[nodiscard]] QRectF caretArea() const;

    Binding<QString> m_text;
    TextOf m_textOf;
    qsizetype m_replaced = 0;              ///< size of the replaced texts kept for undo, in UTF-16 units
    QString m_shown;                       ///< the bound text as last read or written
    std::optional<bool> m_dragBringsText;  ///< absent unless a drag is over the editor
    QBasicTimer m_blink;
    bool m_caretOn = false;
    bool m_showsCaret = true;
    bool m_caretHiddenByComposition = false;
    bool m_refreshing = false;
};

}  // namespace tralio
