#pragma once

#include <QBasicTimer>

#include <functional>
#include <optional>
#include <utility>

#include "common/binding.h"
#include "ui/kit/text_area.h"

namespace tralio {

/// A multi-line editor of a plain text that somebody else owns, with the program's own caret. Return breaks
/// the line; while an input method composes, it confirms the composition and does nothing else.
class TextEditor : public TextArea {
    Q_OBJECT

public:
    /// Brings the editor in line with the bound text. An equal text leaves caret and selection alone; another
    /// one replaces the whole content, in a step that can be undone, and does not count as an edit. Answers
    /// whether it did.
    bool refresh();

    /// What stays when something is put in place of the selection.
    [[nodiscard]] QString unselectedText() const;

    /// The caret is out of place while something else is about to be put in.
    void setCaretShown(bool shown);
    /// Answers what is inserted of what is pasted or dropped, or nothing; without it, any text that is not
    /// too long is.
    using TextOf = std::function<std::optional<QString>(const QMimeData& source)>;
    void setTextOf(TextOf textOf) { m_textOf = std::move(textOf); }

protected:
    /// `text` is written on every edit, also of a composition, and read by `refresh`.
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
    qsizetype m_replaced = 0;              ///< what undo keeps of replaced texts, in UTF-16 units
    QString m_shown;                       ///< the bound text as it was last read or written
    std::optional<bool> m_dragBringsText;  ///< while one is over the editor
    QBasicTimer m_blink;
    bool m_caretOn = false;
    bool m_showsCaret = true;
    bool m_caretHiddenByComposition = false;
    bool m_refreshing = false;
};

}  // namespace tralio
