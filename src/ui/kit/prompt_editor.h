#pragma once

#include <utility>

#include "common/binding.h"
#include "ui/kit/text_editor.h"

namespace tralio {

/// A few lines of text with a background, among other fields: Tab moves on to the next one.
class PromptEditor final : public QWidget {
    Q_OBJECT

public:
    /// `text` is written on every edit and read by `refresh`.
    explicit PromptEditor(Binding<QString> text, QWidget* parent = nullptr);

    /// Shows the bound text, keeping the caret's position.
    void refresh();
    /// As TextEditor::setTextOf.
    void setTextOf(TextEditor::TextOf textOf) { m_editor->setTextOf(std::move(textOf)); }
    /// The accessible name of the editor.
    void setSpokenCaption(const QString& caption);

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    TextEditor* m_editor;
    bool m_hovered = false;
};

}  // namespace tralio
