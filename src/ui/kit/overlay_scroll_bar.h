#pragma once

#include <QPointer>
#include <QWidget>

class QAbstractScrollArea;
class QScrollBar;

namespace tralio {

/// A thumb that lies over the content of a scrolling area: no track, no arrows, always visible while the
/// content is taller than its area. Stands in for the area's own vertical bar, which it hides and drives.
class OverlayScrollBar final : public QWidget {
    Q_OBJECT

public:
    explicit OverlayScrollBar(QAbstractScrollArea* area);

    /// Makes the thumb keep its distance from the right edge of a widget around the area instead of the
    /// area's own.
    void setFrame(QWidget* frame);

    /// Where the thumb is, in the bar's coordinates. Empty while there is nothing to scroll.
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
    qreal m_grip = 0;  ///< where on the thumb the pointer holds it
};

}  // namespace tralio
