#pragma once

#include <QRect>

#include "programs/snip/monitor_layout.h"

namespace tralio {

/// Where the size label is put: diagonally off the active corner if there is room (the arms of the pointer's
/// cross lie along the axes), always on the monitor, and `gap` pixels clear of the corners, so that the user
/// sees what they enclose.
[[nodiscard]] QRect placeSizeLabel(
    QSize label, const QRect& area, QPoint activeCorner, const QRect& monitor, int gap);

/// Where the hint is put: horizontally centred, a little above the bottom of the monitor.
[[nodiscard]] QRect placeHint(QSize hint, const Monitor& monitor);

}  // namespace tralio
