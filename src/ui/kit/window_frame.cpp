#include "ui/kit/window_frame.h"

#include "ui/kit/painting.h"
#include "ui/kit/shadow.h"
#include "ui/kit/theme.h"

namespace tralio {

WindowFrame::WindowFrame(Edges edges, QWidget* parent) : QWidget(parent), m_edges(edges) {
    arrange();
}

void WindowFrame::setContent(QWidget* content) {
    m_content = content;
    content->setParent(this);
    arrange();
    content->show();
}

void WindowFrame::setContentHeight(int height) {
    m_contentHeight = height;
    arrange();
}

void WindowFrame::setEdges(Edges edges) {
    m_edges = edges;
    arrange();
    update();
}

QMargins WindowFrame::shadowMargins() const {
    return m_edges == Edges::floating ? QMargins(40, 28, 40, 52) : QMargins();
}

QRect WindowFrame::contentArea() const {
    const QMargins margins = shadowMargins();
    return {margins.left(), margins.top(), contentSize.width(), m_contentHeight};
}

void WindowFrame::arrange() {
    // Only the floating window is translucent: without a compositor its corners would be black.
    setAttribute(Qt::WA_TranslucentBackground, m_edges == Edges::floating);
    setFixedSize(contentArea().size().grownBy(shadowMargins()));
    if (m_content != nullptr)
        m_content->setGeometry(contentArea());
}

void WindowFrame::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect area = contentArea();
    if (m_edges == Edges::floating) {
        paintShadow(painter, area, radius::window, shadow::window);
        paintShadow(painter, area, radius::window, shadow::windowNear);
    }
    paintWindow(painter);
}

void WindowFrame::paintWindow(QPainter& painter) const {
    const QRect area = contentArea();
    if (m_edges == Edges::square) {
        painter.fillRect(area, color(ColorRole::window));
        paintEdge(painter, area, 0, 1, color(ColorRole::windowEdge));
        return;
    }
    paintFill(painter, area, radius::window, color(ColorRole::window));
    paintEdge(painter, area.adjusted(-1, -1, 1, 1), radius::window + 1, 1, color(ColorRole::windowEdge));
}

void WindowFrame::paintGround(QPainter& painter, const QWidget& widget) {
    const QWidget* ancestor = &widget;
    while (ancestor != nullptr && qobject_cast<const WindowFrame*>(ancestor) == nullptr)
        ancestor = ancestor->parentWidget();
    const auto* frame = static_cast<const WindowFrame*>(ancestor);
    if (frame == nullptr) {
        painter.fillRect(widget.rect(), color(ColorRole::window));
        return;
    }
    painter.save();
    painter.translate(widget.mapFrom(frame, QPoint()));
    frame->paintWindow(painter);
    painter.restore();
}

}  // namespace tralio
