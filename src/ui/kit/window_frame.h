#pragma once

#include <QWidget>

class QPainter;

namespace tralio {

/// The surface of the popover: the content on a rounded window with an edge, and a shadow in a translucent
/// margin. Without a compositor the window is square, without margin and shadow, and the edge is drawn
/// inside.
///
/// Only paints; its owner sets window flags and place, closes the window, and says whether a compositor runs.
class WindowFrame final : public QWidget {
    Q_OBJECT

public:
    enum class Edges { floating, square };

    static constexpr QSize contentSize{530, 585};

    explicit WindowFrame(Edges edges, QWidget* parent = nullptr);

    /// Takes ownership of the content and sets its size.
    void setContent(QWidget* content);
    /// Makes the content lower than usual, for a low screen.
    void setContentHeight(int height);
    void setEdges(Edges edges);

    /// The visible window. Clicks in the margin around it count as clicks elsewhere.
    [[nodiscard]] QRect contentArea() const;
    /// Paints the background of `widget`'s window: for widgets that cover the content.
    static void paintGround(QPainter& painter, const QWidget& widget);
    /// The translucent margin around the content.
    [[nodiscard]] QMargins shadowMargins() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintWindow(QPainter& painter) const;
    void arrange();

    Edges m_edges;
    int m_contentHeight = contentSize.height();
    QWidget* m_content = nullptr;
};

}  // namespace tralio
