#pragma once

#include <functional>

#include "ui/kit/text_editor.h"

namespace tralio {

/// A multi-line plain text editor in which Return submits, and Shift+Return or Alt+Return insert a line
/// break. While an input method composes, Return only confirms the composition. Tab inserts a tab;
/// Control+Tab and Shift+Tab leave the editor.
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
