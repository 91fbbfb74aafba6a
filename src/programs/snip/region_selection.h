#pragma once

#include <QPoint>
#include <QRect>

#include <optional>

#include "programs/snip/monitor_layout.h"

namespace tralio {

/// What the user does in the region picker: pointer and keys in, a rectangle and an outcome out.
///
/// A drag from a free place draws, and letting go confirms. The keyboard places a rectangle that waits for
/// confirm(); until then the pointer may also move it or pull its edges, and drawing anew replaces it.
/// Places are pixels of the screen, and a rectangle holds the pixels that it was drawn from and to.
class RegionSelection final {
public:
    enum class Stage { Waiting, Drawing, Placed, Adjusting, Confirmed, Cancelled };
    enum class ArrowEffect { Move, Resize };
    enum class Stride { Fine = 1, Coarse = 10 };  ///< logical pixels

    RegionSelection(MonitorLayout monitors, QPoint pointer);

    // What happens. Nothing changes any more once it is over.
    void press(QPoint place);
    void moveTo(QPoint place);
    void release(QPoint place);
    /// `direction` is a unit vector. Without a rectangle the first arrow brings one, at the pointer.
    void pressArrow(QPoint direction, ArrowEffect effect, Stride stride);
    /// Takes a placed rectangle; without one, brings one.
    void confirm();
    void cancel();

    // What stands.
    [[nodiscard]] Stage stage() const { return m_stage; }
    [[nodiscard]] bool isOver() const;
    /// Absent until something is drawn, and while a drag is too short to count as one.
    [[nodiscard]] std::optional<QRect> area() const;
    [[nodiscard]] QPoint pointer() const { return m_pointer; }
    /// The corner that changes, beside which its size is told.
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
    Qt::Edges m_heldEdges;  ///< those that follow the pointer; all four: the whole rectangle does
};

}  // namespace tralio
