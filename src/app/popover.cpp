#include "app/popover.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

#include <utility>

#include "app/popover_placement.h"
#include "ui/kit/window_frame.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// A click on the tray item first takes the focus away, which closes the popover, and then arrives: within
/// this time it means the popover that the user still saw.
constexpr qint64 sameClick = 300;  // milliseconds

constexpr auto focusPoll = std::chrono::milliseconds(50);

QScreen* screenFor(std::optional<QRect> anchor) {
    QScreen* screen = QGuiApplication::screenAt(anchor ? anchor->center() : QCursor::pos());
    return screen ? screen : QGuiApplication::primaryScreen();
}

}  // namespace

Popover::Popover(std::function<QWidget*()> makeContent, WindowSystem windowSystem)
    : QWidget(nullptr,
              Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint),
      m_makeContent(std::move(makeContent)),
      m_windowSystem(std::move(windowSystem)) {
    setWindowTitle(u"Tralio"_s);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    m_focusWatch.setInterval(focusPoll);
    connect(&m_focusWatch, &QTimer::timeout, this, &Popover::hideUnlessActive);
}

bool Popover::isShown() const {
    return isVisible() || (m_closedByDeactivation.isValid() && !m_closedByDeactivation.hasExpired(sameClick));
}

void Popover::show(std::optional<QRect> anchor) {
    const bool floating = m_windowSystem.isCompositing && m_windowSystem.isCompositing();
    const auto edges = floating ? WindowFrame::Edges::Floating : WindowFrame::Edges::Square;
    if (!m_frame) {
        m_frame = new WindowFrame(edges);
        m_frame->setContent(m_makeContent());
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins({});
        layout->setSizeConstraint(QLayout::SetFixedSize);
        layout->addWidget(m_frame);
    }
    m_frame->setEdges(edges);
    m_closedByDeactivation.invalidate();
    m_sinceShown.start();
    if (!isVisible()) {
        place(anchor);
        QWidget::show();
    }
    bringToFront();
}

void Popover::bringToFront() {
    raise();
    activateWindow();
    if (m_windowSystem.activate)
        m_windowSystem.activate(winId());
}

void Popover::place(std::optional<QRect> anchor) {
    adjustSize();
    const QMargins margins = m_frame->shadowMargins();
    const QRect place =
        popoverPlace(size().shrunkBy(margins), screenFor(anchor)->availableGeometry(), anchor);
    move(place.topLeft() - QPoint(margins.left(), margins.top()));
}

void Popover::performClose() {
    m_closedByDeactivation.invalidate();
    hide();
}

bool Popover::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate)
        hideUnlessActive();
    return QWidget::event(event);
}

void Popover::hideUnlessActive() {
    // The toolkit may be telling of the time before the popover was shown, or of a moment's grab; it will not
    // tell when another window becomes active meanwhile. So look again.
    const bool justShown = !m_sinceShown.hasExpired(sameClick);
    const bool inFront = m_windowSystem.isActive && m_windowSystem.isActive(winId());
    const bool pressed = m_windowSystem.isMousePressed && m_windowSystem.isMousePressed();
    const bool released = std::exchange(m_mouseWasPressed, pressed) && !pressed;
    if (!isVisible() || isActiveWindow()) {
        m_focusWatch.stop();
    } else if (pressed || justShown || inFront) {
        m_focusWatch.start();
    } else if (released &&
               m_frame->contentArea().translated(pos() + m_frame->pos()).contains(QCursor::pos())) {
        m_sinceShown.start();
        bringToFront();
    } else {
        m_focusWatch.stop();
        hide();
        m_closedByDeactivation.start();
    }
}

void Popover::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        performClose();
    else
        QWidget::keyPressEvent(event);
}

void Popover::mousePressEvent(QMouseEvent* event) {
    // The shadow is beside the window, whatever the window system thinks.
    if (!m_frame->contentArea().translated(m_frame->pos()).contains(event->pos()))
        performClose();
}

}  // namespace tralio
