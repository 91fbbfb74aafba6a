#pragma once

#include <QRect>

#include "programs/snip/monitor_layout.h"

namespace tralio {

/// Where the label with the size of `area` stands: diagonally off the corner that changes where there is room
/// (the cross of the pointer points along the axes), always on the monitor, and `gap` pixels clear of the
/// corners, so that the user sees what they enclose.
[[nodiscard]] QRect placeSizeLabel(
    QSize label, const QRect& area, QPoint activeCorner, const QRect& monitor, int gap);

/// Where the hint stands: in the middle, a little above the bottom of the monitor.
[[nodiscard]] QRect placeHint(QSize hint, const Monitor& monitor);

}  // namespace tralio
