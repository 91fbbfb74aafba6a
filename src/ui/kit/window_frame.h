#pragma once

#include <QWidget>

class QPainter;

namespace tralio {

/// The surface of the popover: the content on a rounded window with an edge and a shadow, in a translucent
/// margin that makes room for the shadow. Where no compositor runs, the window is square, without margin and
/// shadow, and the edge lies inside.
///
/// Only paints; flags, place and closing of the window are its owner's, as is telling whether a compositor
/// runs.
class WindowFrame final : public QWidget {
    Q_OBJECT

public:
    enum class Edges { floating, square };

    static constexpr QSize contentSize{530, 585};

    explicit WindowFrame(Edges edges, QWidget* parent = nullptr);

    /// Takes the content over and gives it the content size.
    void setContent(QWidget* content);
    /// Makes the content lower than its usual height, for a screen that is.
    void setContentHeight(int height);
    void setEdges(Edges edges);

    /// Where the window is for the user. Clicks outside it are clicks beside the window.
    [[nodiscard]] QRect contentArea() const;
    /// Paints the ground of the window that `widget` stands in: for what covers the window's content.
    static void paintGround(QPainter& painter, const QWidget& widget);
    /// The translucent room around the content.
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
