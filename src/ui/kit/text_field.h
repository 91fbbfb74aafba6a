#pragma once

#include <QLineEdit>

namespace tralio {

/// A single-line text field with a background. Set an accessible name; the placeholder is not one.
class TextField final : public QLineEdit {
    Q_OBJECT

public:
    enum class Face { proportional, fixedWidth };

    explicit TextField(Face face = Face::proportional, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

    /// The text including an input method's composition. To the user that is part of the text: a click on a
    /// button, which does not take the focus, would otherwise miss the last word.
    [[nodiscard]] QString shownText() const;
    /// As QLineEdit::setText. Discards a composition, and does not count as an edit.
    void setText(const QString& text);

Q_SIGNALS:
    /// The user has changed the shown text.
    void edited(const QString& shownText);

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    void followTheme();
    void tell();

    QString m_composed;
    QString m_told;  ///< the shown text as last reported
    bool m_hovered = false;
};

}  // namespace tralio
