#include "ui/kit/icon_view.h"

#include <QPainter>

#include "ui/kit/theme.h"

namespace tralio {

IconView::IconView(const Icon& icon, ColorRole role, QWidget* parent)
    : QWidget(parent), m_icon(icon), m_role(role) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void IconView::setIcon(const Icon& icon) {
    m_icon = icon;
    updateGeometry();
    update();
}

void IconView::setColor(ColorRole role) {
    m_role = role;
    update();
}

QSize IconView::sizeHint() const {
    return {m_icon.box(), m_icon.box()};
}

void IconView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintIcon(painter, rect(), m_icon, color(m_role));
}

}  // namespace tralio
