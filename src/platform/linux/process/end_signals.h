#pragma once

#include <QSocketNotifier>

#include <functional>

namespace tralio {

/// Turns the signals that ask a program to end (end of the session, `kill`, Control+C in its terminal) into a
/// call, so that it can end in order. Each signal is caught once: a second one of its kind ends the process
/// at once, in case it hangs. A signal that was ignored when the program started stays ignored.
class EndSignals final {
public:
    /// `end` is called from the event loop. Only one object may exist at a time.
    explicit EndSignals(std::function<void()> end);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

private:
    std::function<void()> m_end;
    QSocketNotifier m_notifier{QSocketNotifier::Read};
};

}  // namespace tralio
