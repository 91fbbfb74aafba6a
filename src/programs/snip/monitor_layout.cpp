#include "programs/snip/monitor_layout.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tralio {
namespace {

int distance(const QRect& area, QPoint place) {
    const int across = std::max({area.left() - place.x(), 0, place.x() - area.right()});
    const int down = std::max({area.top() - place.y(), 0, place.y() - area.bottom()});
    return across + down;
}

qint64 sharedPixels(const QRect& one, const QRect& other) {
    const QRect shared = one & other;
    return qint64(shared.width()) * shared.height();
}

}  // namespace

int Monitor::pixels(double logical) const {
    return std::max(1, int(std::lround(logical * scale)));
}

MonitorLayout::MonitorLayout(std::vector<Monitor> monitors) : m_monitors(std::move(monitors)) {
    for (const Monitor& monitor : m_monitors)
        m_bounds |= monitor.area;
}

const Monitor& MonitorLayout::at(QPoint place) const {
    return *std::min_element(
        m_monitors.begin(), m_monitors.end(),
        [place](const Monitor& one, const Monitor& other) {
            return distance(one.area, place) < distance(other.area, place);
        });
}

double MonitorLayout::scaleOf(const QRect& area) const {
    return std::max_element(
        m_monitors.begin(), m_monitors.end(),
        [&area](const Monitor& one, const Monitor& other) {
            return sharedPixels(one.area, area) < sharedPixels(other.area, area);
        })
        ->scale;
}

}  // namespace tralio
