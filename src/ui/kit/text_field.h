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

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void followTheme();

    bool m_hovered = false;
};

}  // namespace tralio
