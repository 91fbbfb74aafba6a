#pragma once

#include <QBasicTimer>

#include <functional>

#include "common/binding.h"
#include "ui/kit/text_area.h"

namespace tralio {

/// A multi-line editor of plain text in which Return submits and Shift+Return or Alt+Return break the line.
/// While an input method composes, Return confirms the composition and does nothing else. Tab is a character
/// of the text; Control+Tab and Shift+Tab leave the editor.
class MultilineEnterInputView final : public TextArea {
    Q_OBJECT

public:
    /// `text` is written on every edit, also of a composition, and read by `refresh`; `onSubmit` runs when
    /// Return is pressed.
    MultilineEnterInputView(Binding<QString> text, std::function<void()> onSubmit, QWidget* parent = nullptr);

    /// Brings the editor in line with the bound text. An equal text leaves caret and selection alone; another
    /// one replaces the whole content, in a step that can be undone, and does not count as an edit.
    void refresh();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    [[nodiscard]] bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;
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
    std::function<void()> m_onSubmit;
    QString m_shown;  ///< the bound text as it was last read or written
    QBasicTimer m_blink;
    bool m_caretOn = false;
    bool m_caretHiddenByComposition = false;
    bool m_refreshing = false;
};

}  // namespace tralio
