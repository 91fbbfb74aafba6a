#include "window_watch.h"

#include <QElapsedTimer>

#include <xcb/xtest.h>

namespace tralio {
namespace {

constexpr quint8 superKey = 133;
constexpr quint8 shiftKey = 50;
constexpr quint8 dKey = 40;
constexpr int timeLimit = 10'000;  // milliseconds

}  // namespace

WindowWatch::WindowWatch() : m_connection(X11Connection::open()) {
    const quint32 events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection->xcb(), m_connection->root(), XCB_CW_EVENT_MASK, &events);
    m_connection->sync();
}

double WindowWatch::untilOneComes(Coming coming, const std::function<void()>& trigger) {
    m_connection->dispatchPending();
    QElapsedTimer time;
    time.start();
    trigger();
    const auto seen = m_connection->waitFor(
        [&](const xcb_generic_event_t& event) {
            return (event.response_type & 0x7f) == static_cast<quint8>(coming);
        },
        QDeadlineTimer(timeLimit));
    return seen ? static_cast<double>(time.nsecsElapsed()) / 1e6 : 0;
}

void WindowWatch::pressHotKey() {
    const auto fake = [this](quint8 type, quint8 key) {
        xcb_test_fake_input(m_connection->xcb(), type, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    };
    for (const quint8 key : {superKey, shiftKey, dKey})
        fake(XCB_KEY_PRESS, key);
    for (const quint8 key : {dKey, shiftKey, superKey})
        fake(XCB_KEY_RELEASE, key);
    xcb_flush(m_connection->xcb());
}

}  // namespace tralio
