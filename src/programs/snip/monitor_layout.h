#pragma once

#include <QRect>
#include <QString>

#include <vector>

namespace tralio {

/// One monitor. `area` is in pixels of the screen, `scale` says how many of them make a logical pixel.
struct Monitor {
    QString name;
    QRect area;
    double scale = 1;

    /// A length in logical pixels, in whole pixels of this monitor and at least one.
    [[nodiscard]] int pixels(double logical) const;
};

/// The monitors that make the screen.
class MonitorLayout final {
public:
    /// `monitors` must not be empty.
    explicit MonitorLayout(std::vector<Monitor> monitors);

    /// The rectangle around all monitors.
    [[nodiscard]] QRect bounds() const { return m_bounds; }
    /// The monitor with this place, or the nearest one.
    [[nodiscard]] const Monitor& at(QPoint place) const;
    /// The scale of the monitor that shows most of an area.
    [[nodiscard]] double scaleOf(const QRect& area) const;

private:
    std::vector<Monitor> m_monitors;
    QRect m_bounds;
};

}  // namespace tralio
