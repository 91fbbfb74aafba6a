#include "ui/kit/surface.h"

#include "ui/kit/painting.h"
#include "ui/kit/theme.h"

namespace tralio {

Surface::Surface(ColorRole fill, ColorRole edge, int radius, QWidget* parent)
    : QWidget(parent), m_fill(fill), m_edge(edge), m_radius(radius) {}

void Surface::setFill(ColorRole fill) {
    m_fill = fill;
    update();
}

void Surface::setEdge(ColorRole edge, int width) {
    m_edge = edge;
    m_edgeWidth = width;
    update();
}

void Surface::setHead(QWidget* head, ColorRole fill) {
    m_head = head;
    m_headFill = fill;
}

void Surface::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintFill(painter, rect(), m_radius, color(m_fill));
    if (m_head != nullptr) {
        painter.setClipRect(0, 0, width(), m_head->geometry().bottom() + 1);
        paintFill(painter, rect(), m_radius, color(m_headFill));
        painter.setClipping(false);
    }
    paintEdge(painter, rect(), m_radius, m_edgeWidth, color(m_edge));
}

Divider::Divider(QWidget* parent, ColorRole role) : QWidget(parent), m_role(role) {
    setFixedHeight(1);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Divider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), color(m_role));
}

}  // namespace tralio
