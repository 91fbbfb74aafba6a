#pragma once

#include <QPointer>
#include <QWidget>

class QAbstractScrollArea;
class QScrollBar;

namespace tralio {

/// A scroll thumb over the content of a scroll area: without track or arrows, visible while the content is
/// taller than the area. Replaces the area's own vertical bar, which it hides and controls.
class OverlayScrollBar final : public QWidget {
    Q_OBJECT

public:
    explicit OverlayScrollBar(QAbstractScrollArea* area);

    /// Places the thumb at the right edge of `frame`, a widget around the area, instead of the area's.
    void setFrame(QWidget* frame);

    /// The rectangle of the thumb, in this widget's coordinates. Empty while there is nothing to scroll.
    [[nodiscard]] QRectF thumb() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place();

    QAbstractScrollArea* m_area;
    QPointer<QWidget> m_frame;
    QScrollBar* m_bar;
    bool m_hovered = false;
    bool m_dragged = false;
    qreal m_grip = 0;  ///< where the pointer holds the thumb, from the thumb's top
};

}  // namespace tralio
