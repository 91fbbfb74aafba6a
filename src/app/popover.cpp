#include "app/popover.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>
#include <utility>

#include "app/popover_placement.h"
#include "ui/kit/keyboard_use.h"
#include "ui/kit/theme.h"
#include "ui/kit/window_frame.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int opening = 120;  // milliseconds
constexpr int closing = 80;
constexpr int rise = 4;
/// The opacity of the first frame: something is visible at once after a hot key.
constexpr qreal firstPresence = 0.25;

QScreen* screenFor(std::optional<QRect> anchor) {
    QScreen* screen = QApplication::screenAt(anchor ? anchor->center() : QCursor::pos());
    return screen ? screen : QApplication::primaryScreen();
}

}  // namespace

Popover::Popover(std::function<QWidget*()> makeContent, WindowSystem& windowSystem, Clock& clock)
    : QWidget(nullptr,
          Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint),
      m_makeContent(std::move(makeContent)),
      m_windowSystem(windowSystem),
      m_clock(clock),
      m_focus(*this, clock) {
    setWindowTitle(u"Tralio"_s);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    connect(
        &m_motion, &QVariantAnimation::valueChanged, this,
        [this](const QVariant& presence) { setPresence(presence.toReal()); });
    connect(&m_motion, &QVariantAnimation::finished, this, [this] { setVisible(m_shown); });
}

Popover::~Popover() {
    m_windowSystem.watchInput({});
}

bool Popover::isShown() const {
    return (m_shown && !isElsewhere()) || m_focus.wasJustClosed();
}

void Popover::show(std::optional<QRect> anchor) {
    const bool floating = m_windowSystem.isCompositing();
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
    // One that was left open on another desktop would carry the user back there.
    if (!m_shown || isElsewhere() || isCut()) {
        m_windowSystem.giveClicksBack();
        hide();  // a popover that is fading out is opened anew, with all the signals
        place(anchor);
        appear(motionTime(opening));
        m_windowSystem.watchInput([this](WindowSystem::Input what) { userDid(what); });
    }
    m_focus.shown();
}

void Popover::appear(int motion) {
    // WORKAROUND: KWin 6.3 moves a window that has a shadow when it is hidden, without telling it: Qt would
    // not send the place where it stood before once more.
    windowHandle()->setPosition(m_place + QPoint(0, 2 * rise));
    m_shown = true;
    setPresence(motion == 0 ? 1 : firstPresence);
    QWidget::show();
    windowHandle()->installEventFilter(this);
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
    m_motion.stop();
    ends();
    if (m_awaitsSecondPress)
        m_windowSystem.takeClicksAt(winId());  // it is not meant for what lies beneath
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
    return m_windowSystem.fades() ? Theme::current().duration(time) : 0;
}

void Popover::setPresence(qreal presence) {
    if (windowOpacity() != presence)  // not every window system supports opacity
        setWindowOpacity(presence);
    if (m_shown)
        move(m_place + QPoint(0, qRound(rise * (1 - presence))));
}

void Popover::hideEvent(QHideEvent* event) {
    // Also called when the window manager closes the window.
    ends();
    m_motion.stop();
    QWidget::hideEvent(event);
}

void Popover::ends() {
    m_shown = false;
    m_windowSystem.watchInput({});
    m_focus.hidden();
}

bool Popover::isElsewhere() const {
    const bool isOnScreen = !m_windowSystem.placesWindows() || QApplication::screenAt(geometry().center());
    return !isOnScreen || m_windowSystem.isOnOtherDesktop(internalWinId());
}

bool Popover::isCut() const {
    if (!m_windowSystem.placesWindows())
        return false;
    const QRect content = m_frame->contentArea().translated(m_place + m_frame->pos());
    const QScreen* screen = QApplication::screenAt(content.center());
    const QRect room = screen ? screen->geometry() : QRect();
    return content.width() <= room.width() && content.height() <= room.height() && !room.contains(content);
}

void Popover::userDid(WindowSystem::Input what) {
    using Input = WindowSystem::Input;
    const bool isButton = what == Input::buttonPressed || what == Input::buttonReleased;
    if (isButton && isElsewhere())
        return;  // the user cannot mean a popover that is out of sight
    switch (what) {
        case Input::buttonPressed:
            m_focus.pressed();
            break;
        case Input::buttonReleased:
            m_focus.released();
            break;
        case Input::pointerMoved:
            m_focus.moved();
            break;
        case Input::switchingKey:
            m_focus.switched();
            break;
    }
}

bool Popover::isActive() const {
    return isActiveWindow();
}

bool Popover::isInFront() const {
    return m_windowSystem.isActive(internalWinId());
}

bool Popover::isUnderPointer() const {
    const QPoint pointer = QCursor::pos();
    // The shadow does not count as part of the window, although it belongs to it for the window system.
    if (m_frame->contentArea().translated(pos() + m_frame->pos()).contains(pointer))
        return true;
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [&](const QWidget* window) {
        return window != this && window->isVisible() && window->frameGeometry().contains(pointer);
    });
}

void Popover::bringToFront() {
    raise();
    activateWindow();
    m_windowSystem.activate(winId());
}

void Popover::place(std::optional<QRect> anchor) {
    QRect available = screenFor(anchor)->availableGeometry();
    const QMargins margins = m_frame->shadowMargins();
    if (!m_windowSystem.placesWindows())  // the compositor may keep the shadow on the screen, too
        available.setHeight(available.height() - margins.top() - margins.bottom());
    m_frame->setContentHeight(popoverHeight(WindowFrame::contentSize.height(), available));
    adjustSize();
    const QRect place = popoverPlace(size().shrunkBy(margins), available, anchor);
    m_place = place.topLeft() - QPoint(margins.left(), margins.top());
    m_windowSystem.setShadow(winId(), (margins.toMarginsF() * devicePixelRatio()).toMargins());
}

void Popover::performClose() {
    disappear();
}

bool Popover::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate)
        m_focus.activated();
    else if (event->type() == QEvent::WindowDeactivate)
        m_focus.deactivated();
    else if (event->type() == QEvent::Leave)
        m_focus.left();
    return QWidget::event(event);
}

bool Popover::eventFilter(QObject* watched, QEvent* event) {
    // Filtered on the QWindow: widgets get motions only while a button is down, and presses one after
    // another.
    if (event->type() == QEvent::MouseMove && watched == windowHandle())
        m_focus.movedInside();
    else if (event->type() == QEvent::DragEnter && watched == windowHandle())
        m_focus.dragged();
    else if (event->type() == QEvent::MouseButtonPress && watched == windowHandle())
        awaitSecondPress();
    return QWidget::eventFilter(watched, event);
}

void Popover::awaitSecondPress() {
    m_awaitsSecondPress = true;
    m_doubleClickEnd = m_clock.after(std::chrono::milliseconds(QApplication::doubleClickInterval()), [this] {
        m_awaitsSecondPress = false;
        m_windowSystem.giveClicksBack();
    });
}

void Popover::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape)
        QWidget::keyPressEvent(event);
    else if (!isRepeat(*event))  // not a repeat of the press that ended a menu or a recognition
        performClose();
}

void Popover::mousePressEvent(QMouseEvent* event) {
    // A click on the shadow is a click beside the window.
    if (!m_frame->contentArea().translated(m_frame->pos()).contains(event->pos()))
        performClose();
}

}  // namespace tralio
