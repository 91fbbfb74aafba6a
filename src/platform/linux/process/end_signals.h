#pragma once

#include <QSocketNotifier>

#include <functional>

namespace tralio {

/// Turns the signals by which a program is asked to end (the end of a session, `kill`, Control+C in its
/// terminal) into a call, so that it ends in order. Each counts once: the next of its kind ends the process
/// at once, for one that hangs. A signal that was ignored when the program started stays ignored.
class EndSignals final {
public:
    /// `end` is called in the event loop. One object at a time.
    explicit EndSignals(std::function<void()> end);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

private:
    std::function<void()> m_end;
    QSocketNotifier m_notifier{QSocketNotifier::Read};
};

}  // namespace tralio
