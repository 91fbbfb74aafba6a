#include "common/clock.h"

#include <QTimer>

#include <utility>

namespace tralio {

namespace {

/// Short waits must be precise, since the selection fetch depends on them; from a second on, a timer is not
/// worth a wake-up of its own.
Qt::TimerType precision(std::chrono::milliseconds wait) {
    return wait < std::chrono::seconds(1) ? Qt::PreciseTimer : Qt::CoarseTimer;
}

}  // namespace

void SystemClock::after(std::chrono::milliseconds delay, QObject* context, std::function<void()> action) {
    // The timer is a child of the context, so that cancelling a call deletes its timer, too.
    auto* timer = new QTimer(context);
    timer->setSingleShot(true);
    timer->setTimerType(precision(delay));
    QObject::connect(timer, &QTimer::timeout, context, [timer, action = std::move(action)] {
        timer->deleteLater();
        action();
    });
    timer->start(delay);
}

void SystemClock::every(std::chrono::milliseconds interval, QObject* context, std::function<void()> action) {
    auto* timer = new QTimer(context);
    timer->setTimerType(precision(interval));
    QObject::connect(timer, &QTimer::timeout, context, std::move(action));
    timer->start(interval);
}

}  // namespace tralio
