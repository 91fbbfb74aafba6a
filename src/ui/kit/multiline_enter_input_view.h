#pragma once

#include <functional>

#include "ui/kit/text_editor.h"

namespace tralio {

/// A multi-line editor of plain text in which Return submits and Shift+Return or Alt+Return break the line.
/// While an input method composes, Return confirms the composition and does nothing else. Tab is a character
/// of the text; Control+Tab and Shift+Tab leave the editor.
class MultilineEnterInputView final : public TextEditor {
    Q_OBJECT

public:
    /// `text` is written on every edit and read by `refresh`; `onSubmit` runs when Return is pressed.
    MultilineEnterInputView(Binding<QString> text, std::function<void()> onSubmit, QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    std::function<void()> m_onSubmit;
};

}  // namespace tralio
