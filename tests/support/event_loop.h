#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

namespace tralio {

/// Runs the event loop until `condition` holds; false if it does not within the time limit.
template <typename Condition>
[[nodiscard]] bool eventually(Condition condition) {
    const QDeadlineTimer deadline(20'000);
    QTimer heartbeat;  // the condition may become true without an event on this thread
    heartbeat.start(5);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

/// Processes what was deferred to the next turn of the event loop; false if that turn never comes.
[[nodiscard]] inline bool nextTurn() {
    QObject marker;
    bool passed = false;
    QMetaObject::invokeMethod(
        &marker, [&passed] { passed = true; }, Qt::QueuedConnection);
    return eventually([&passed] { return passed; });
}

}  // namespace tralio
