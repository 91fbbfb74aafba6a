#include "ui/kit/icon_tile.h"

#include "ui/kit/painting.h"
#include "ui/kit/theme.h"

namespace tralio {

IconTile::IconTile(const Icon& icon, ColorRole role, ColorRole fill, QWidget* parent)
    : QWidget(parent), m_icon(icon), m_role(role), m_fill(fill) {
    constexpr int side = 36;
    setFixedSize(side, side);
}

void IconTile::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    paintFill(painter, rect(), radius::tile, color(m_fill));
    paintIcon(painter, rect(), m_icon, color(m_role));
}

}  // namespace tralio
