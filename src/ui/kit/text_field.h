#pragma once

#include <QLineEdit>

#include <optional>

namespace tralio {

class Pasteboard;

/// A single-line text field with a background. Set an accessible name; the placeholder is not one. One that
/// is masked has no undo, and leaves its keys to what stands around it.
class TextField final : public QLineEdit {
    Q_OBJECT

public:
    enum class Face { proportional, fixedWidth };

    /// `pasteboard` reads what is pasted, no more of it than is accepted; without it, the toolkit does.
    explicit TextField(Face face, Pasteboard* pasteboard = nullptr, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

    /// The text including an input method's composition. To the user that is part of the text: a click on a
    /// button, which does not take the focus, would otherwise miss the last word.
    [[nodiscard]] QString shownText() const;
    /// As QLineEdit::setText. Discards a composition, and does not count as an edit.
    void setText(const QString& text);

    /// Inserts what is copied.
    void paste();

Q_SIGNALS:
    /// Somebody has changed the shown text, other than by setText.
    void edited(const QString& shownText);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    void followTheme();
    void tell();
    void insertForeign(const std::optional<QString>& text);

    Pasteboard* m_pasteboard;
    QString m_composed;
    QString m_told;  ///< the shown text as last reported
    bool m_hovered = false;
};

}  // namespace tralio
