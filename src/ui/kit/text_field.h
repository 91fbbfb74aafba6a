#pragma once

#include <QLineEdit>

namespace tralio {

/// One line of input on its own field. Give it an accessible name; its placeholder is not one.
class TextField final : public QLineEdit {
    Q_OBJECT

public:
    enum class Face { proportional, fixedWidth };

    explicit TextField(Face face = Face::proportional, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

    /// The text with what an input method composes in it. To the user that stands there: without it a click
    /// on a button, which leaves the keyboard here, would miss the last word.
    [[nodiscard]] QString shownText() const;
    /// As the toolkit's. What is being composed goes, and nothing counts as an edit.
    void setText(const QString& text);

Q_SIGNALS:
    /// The user has changed what is shown.
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
    QString m_told;  ///< what is shown, as it was told last
    bool m_hovered = false;
};

}  // namespace tralio
