#pragma once

#include <QPoint>
#include <QRect>

#include <optional>

#include "programs/snip/monitor_layout.h"

namespace tralio {

/// The state of the region picker: pointer and key events in, a rectangle and an outcome out.
///
/// Dragging from outside a rectangle draws one, and releasing the button confirms it. With the keyboard the
/// user places a rectangle that waits for confirm(); until then the pointer may also move it or drag its
/// edges, and drawing again replaces it. Positions are screen pixels, and a rectangle includes the pixels
/// that it was drawn from and to.
class RegionSelection final {
public:
    enum class Stage { Waiting, Drawing, Placed, Adjusting, Confirmed, Cancelled };
    enum class ArrowEffect { Move, Resize };
    enum class Stride { Fine = 1, Coarse = 10 };  ///< logical pixels

    RegionSelection(MonitorLayout monitors, QPoint pointer);

    // Events. Ignored once `isOver()`.
    void press(QPoint place);
    void moveTo(QPoint place);
    void release(QPoint place);
    /// `direction` is a unit vector. Without a rectangle the first arrow places one at the pointer.
    void pressArrow(QPoint direction, ArrowEffect effect, Stride stride);
    /// Confirms a placed rectangle; without one, places one.
    void confirm();
    void cancel();

    // State
    [[nodiscard]] Stage stage() const { return m_stage; }
    [[nodiscard]] bool isOver() const;
    /// Absent until something is drawn, and while a drag is too short to count.
    [[nodiscard]] std::optional<QRect> area() const;
    [[nodiscard]] QPoint pointer() const { return m_pointer; }
    /// The corner that is being changed; the size is shown beside it.
    [[nodiscard]] QPoint activeCorner() const;

private:
    void place();
    void follow();
    [[nodiscard]] Qt::Edges edgesAt(QPoint place) const;
    [[nodiscard]] bool isDrag() const;

    MonitorLayout m_monitors;
    Stage m_stage = Stage::Waiting;
    QPoint m_pointer;
    QRect m_area;
    QPoint m_pressedAt;
    QRect m_areaAtPress;
    Qt::Edges m_heldEdges;  ///< the edges that follow the pointer; all four: the rectangle moves
};

}  // namespace tralio
