#include "ui/kit/scroll_panel.h"

#include <QKeyEvent>
#include <QLayout>
#include <QScrollBar>

#include "ui/kit/overlay_scroll_bar.h"

namespace tralio {

ScrollPanel::ScrollPanel(QWidget* content, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setWidget(content);
    // Lets the background behind show through.
    content->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    constexpr int wheelStep = 16;
    verticalScrollBar()->setSingleStep(wheelStep);
    new OverlayScrollBar(this);
}

void ScrollPanel::layOut() {
    widget()->layout()->activate();
    QEvent change(QEvent::LayoutRequest);
    event(&change);
}

void ScrollPanel::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_PageUp:
            verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepSub);
            break;
        case Qt::Key_PageDown:
            verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
            break;
        default:
            // The arrow keys move within the panel and must not scroll it.
            event->ignore();
    }
}

}  // namespace tralio
