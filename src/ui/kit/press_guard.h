#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QWidget>

#include "common/clock.h"

namespace tralio {

/// Swallows the second press of a double click if another widget has come under the pointer since the first,
/// since it was meant for the former one. Within the double-click interval and at the same place, only the
/// widget that got the first press gets presses.
class PressGuard final : public QObject {
public:
    /// Guards the window of a widget, including menus in it. Widget and clock outlive the guard.
    PressGuard(QWidget& guarded, Clock& clock);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// Whether this press must be swallowed.
    bool isStray(QWidget* target, const QPoint& place, quint64 timestamp);

    QWidget& m_guarded;
    Clock& m_clock;
    ScheduledCall m_intervalEnd;
    bool m_isWithinInterval = false;
    QPointer<QWidget> m_target;  ///< of the first press; null once deleted
    QPoint m_place;
    quint64 m_timestamp = 0;
    int m_swallowed = 0;          ///< number in a row
    bool m_hasSwallowed = false;  ///< whether the release that follows must be swallowed, too
};

}  // namespace tralio
