#pragma once

#include <QRect>
#include <QString>

#include <vector>

namespace tralio {

/// One monitor. `area` is in screen pixels; `scale` is the number of pixels per logical pixel.
struct Monitor {
    QString name;
    QRect area;
    double scale = 1;

    /// A length in logical pixels, converted to whole pixels of this monitor, at least one.
    [[nodiscard]] int pixels(double logical) const;
};

/// All monitors of the screen.
class MonitorLayout final {
public:
    /// `monitors` must not be empty.
    explicit MonitorLayout(std::vector<Monitor> monitors);

    /// The rectangle around all monitors.
    [[nodiscard]] QRect bounds() const { return m_bounds; }
    /// The monitor that contains `place`, or else the nearest one.
    [[nodiscard]] const Monitor& at(QPoint place) const;
    /// The scale of the monitor that shows most of an area.
    [[nodiscard]] double scaleOf(const QRect& area) const;

private:
    std::vector<Monitor> m_monitors;
    QRect m_bounds;
};

}  // namespace tralio
