#include "app/popover.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

#include <utility>

#include "app/popover_placement.h"
#include "ui/kit/theme.h"
#include "ui/kit/window_frame.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// A click on the tray item first takes the focus away, which closes the popover, and then arrives: within
/// this time it means the popover that the user still saw.
constexpr qint64 sameClick = 300;  // milliseconds

constexpr auto focusPoll = std::chrono::milliseconds(50);
/// How long a window manager may take to give the keyboard.
constexpr qint64 focusPatience = 2000;  // milliseconds

constexpr int opening = 120;  // milliseconds
constexpr int closing = 80;
constexpr int rise = 4;
/// The first frame already shows something: a hot key is answered at once.
constexpr qreal firstPresence = 0.25;

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
    connect(&m_focusWatch, &QTimer::timeout, this, &Popover::watchFocus);
    connect(
        &m_motion, &QVariantAnimation::valueChanged, this,
        [this](const QVariant& presence) { setPresence(presence.toReal()); });
    connect(&m_motion, &QVariantAnimation::finished, this, [this] { setVisible(m_shown); });
}

bool Popover::isShown() const {
    return m_shown || (m_closedByDeactivation.isValid() && !m_closedByDeactivation.hasExpired(sameClick));
}

void Popover::show(std::optional<QRect> anchor) {
    const bool floating = m_windowSystem.isCompositing && m_windowSystem.isCompositing();
    const auto edges = floating ? WindowFrame::Edges::floating : WindowFrame::Edges::square;
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
    m_hadFocus = isActiveWindow();
    if (!m_shown) {
        hide();  // one that is fading out opens anew, with all that comes of it
        place(anchor);
        appear(motionTime(opening));
    }
    bringToFront();
}

void Popover::appear(int motion) {
    m_shown = true;
    setPresence(motion == 0 ? 1 : firstPresence);
    QWidget::show();
    if (motion == 0)
        return;
    m_motion.setDuration(motion);
    m_motion.setEasingCurve(QEasingCurve::OutQuad);
    m_motion.setStartValue(firstPresence);
    m_motion.setEndValue(1.0);
    m_motion.start();
}

void Popover::disappear() {
    if (!m_shown)
        return;
    m_shown = false;
    m_motion.stop();
    const int motion = motionTime(closing);
    if (motion == 0) {
        hide();
        return;
    }
    m_motion.setDuration(motion);
    m_motion.setEasingCurve(QEasingCurve::InQuad);
    m_motion.setStartValue(windowOpacity());
    m_motion.setEndValue(0.0);
    m_motion.start();
}

int Popover::motionTime(int time) const {
    const bool fades = m_windowSystem.fades && m_windowSystem.isCompositing && m_windowSystem.isCompositing();
    return fades ? Theme::current().duration(time) : 0;
}

void Popover::setPresence(qreal presence) {
    if (windowOpacity() != presence)  // not every window system knows of it
        setWindowOpacity(presence);
    if (m_shown)
        move(m_place + QPoint(0, qRound(rise * (1 - presence))));
}

void Popover::hideEvent(QHideEvent* event) {
    // Also when the window manager closes the window.
    m_shown = false;
    m_motion.stop();
    QWidget::hideEvent(event);
}

void Popover::bringToFront() {
    raise();
    activateWindow();
    askForFocus();
    if (isActiveWindow())
        return;
    m_sinceAsked.start();
    if (m_windowSystem.isActive)
        m_focusWatch.start();
}

void Popover::askForFocus() {
    if (m_windowSystem.activate)
        m_windowSystem.activate(winId());
}

void Popover::place(std::optional<QRect> anchor) {
    const QRect available = screenFor(anchor)->availableGeometry();
    m_frame->setContentHeight(popoverHeight(WindowFrame::contentSize.height(), available));
    adjustSize();
    const QMargins margins = m_frame->shadowMargins();
    const QRect place = popoverPlace(size().shrunkBy(margins), available, anchor);
    m_place = place.topLeft() - QPoint(margins.left(), margins.top());
}

void Popover::performClose() {
    m_closedByDeactivation.invalidate();
    disappear();
}

bool Popover::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate) {
        m_hadFocus = true;
        m_sinceAsked.invalidate();
    } else if (event->type() == QEvent::WindowDeactivate) {
        watchFocus();
    }
    return QWidget::event(event);
}

void Popover::watchFocus() {
    // The toolkit may be telling of the time before the popover was shown, or of a moment's grab; it will not
    // tell when another window becomes active meanwhile. So look again.
    const bool justShown = !m_sinceShown.hasExpired(sameClick);
    const bool inFront = m_windowSystem.isActive && m_windowSystem.isActive(winId());
    const bool pressed = m_windowSystem.isMousePressed && m_windowSystem.isMousePressed();
    const bool released = std::exchange(m_mouseWasPressed, pressed) && !pressed;
    const bool isAwaited = m_sinceAsked.isValid() && !m_sinceAsked.hasExpired(focusPatience);
    if (!m_shown || isActiveWindow()) {
        m_focusWatch.stop();
    } else if (pressed || justShown || inFront) {
        m_focusWatch.start();
    } else if (released &&
        m_frame->contentArea().translated(pos() + m_frame->pos()).contains(QCursor::pos())) {
        bringToFront();
    } else if (isAwaited && !released) {
        askForFocus();
        m_focusWatch.start();
    } else {
        m_focusWatch.stop();
        if (!m_hadFocus && !released)
            return;  // a window manager that gives no keyboard to it
        disappear();
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
