#pragma once

#include "common/binding.h"
#include "ui/kit/text_editor.h"

namespace tralio {

/// Some lines of text on a field of their own, among other fields: Tab goes on to the next of them.
class PromptEditor final : public QWidget {
    Q_OBJECT

public:
    /// `text` is written on every edit and read by `refresh`.
    explicit PromptEditor(Binding<QString> text, QWidget* parent = nullptr);

    /// Shows the bound text; the caret stays where it was.
    void refresh();
    /// What a screen reader says when the caret comes here.
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
