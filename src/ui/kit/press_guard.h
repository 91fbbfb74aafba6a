#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QWidget>

#include "common/clock.h"

namespace tralio {

/// Keeps the second press of a double click from what has come under the pointer since the first: it was
/// meant for what was there. Within the double-click interval and at the same place, a press reaches only the
/// widget that got the first one.
class PressGuard final : public QObject {
public:
    /// Guards the window that a widget is in, with the menus that lie over it; both outlive the guard.
    PressGuard(QWidget& guarded, Clock& clock);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// Whether a press is one too many.
    bool isStray(QWidget* target, const QPoint& place, quint64 timestamp);

    QWidget& m_guarded;
    Clock& m_clock;
    ScheduledCall m_intervalEnd;
    bool m_isWithinInterval = false;
    QPointer<QWidget> m_target;  ///< of the first press; null once it is gone
    QPoint m_place;
    quint64 m_timestamp = 0;
    int m_swallowed = 0;          ///< in a row
    bool m_hasSwallowed = false;  ///< a press whose release is to come
};

}  // namespace tralio
