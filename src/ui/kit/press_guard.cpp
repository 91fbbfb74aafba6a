#include "ui/kit/press_guard.h"

#include <QApplication>
#include <QMouseEvent>

#include <utility>

namespace tralio {

PressGuard::PressGuard(QWidget& guarded, Clock& clock) : m_guarded(guarded), m_clock(clock) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool PressGuard::isStray(QWidget* target, const QPoint& place, quint64 timestamp) {
    if (timestamp == std::exchange(m_timestamp, timestamp))
        return m_hasSwallowed;  // the same press, propagated to a parent of its first receiver
    const bool isNear = (place - m_place).manhattanLength() <= QApplication::startDragDistance();
    // Users may click three times in a row; further clicks are meant for the new widget.
    constexpr int mostInRow = 2;
    const bool isTooMany = m_isWithinInterval && isNear && m_target != target && m_swallowed < mostInRow;
    m_swallowed = isTooMany ? m_swallowed + 1 : 0;
    if (!isTooMany) {
        m_target = target;
        m_place = place;
    }
    m_isWithinInterval = true;
    m_intervalEnd = m_clock.after(std::chrono::milliseconds(QApplication::doubleClickInterval()),
        [this] { m_isWithinInterval = false; });
    return isTooMany;
}

bool PressGuard::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    const bool isPress = type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick;
    if (!isPress && type != QEvent::MouseButtonRelease)
        return false;
    auto* target = qobject_cast<QWidget*>(watched);
    if (!target || target->window() != m_guarded.window())
        return false;
    if (!isPress)
        return std::exchange(m_hasSwallowed, false);
    const auto& press = static_cast<const QMouseEvent&>(*event);
    m_hasSwallowed = isStray(target, press.globalPosition().toPoint(), press.timestamp());
    return m_hasSwallowed;
}

}  // namespace tralio
