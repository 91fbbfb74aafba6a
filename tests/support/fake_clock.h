#pragma once

#include <QPointer>

#include <map>
#include <memory>

#include "common/clock.h"

namespace tralio {

/// A clock that stands still until a test moves it.
class FakeClock final : public Clock {
public:
    using Clock::after;
    using Clock::every;
    void after(std::chrono::milliseconds delay, QObject* context, std::function<void()> action) override;
    void every(std::chrono::milliseconds interval, QObject* context, std::function<void()> action) override;

    /// Moves time forward and runs what falls due, in order of its time, also what that schedules in turn.
    void advance(std::chrono::milliseconds by);

    /// Time passes while this process stands still, as in a suspension: what has fallen due runs once, late,
    /// and nothing of what that schedules.
    void standStill(std::chrono::milliseconds time);

    /// The time by this clock.
    [[nodiscard]] std::chrono::milliseconds now() const { return m_now; }

    /// The number of calls that still wait for their time.
    [[nodiscard]] qsizetype pending() const;

private:
    /// Takes out the next call and runs it; one that repeats comes again after its interval.
    void runNext();

    struct Call {
        QPointer<QObject> context;
        std::shared_ptr<std::function<void()>> action;  ///< shared, for what a repeated action remembers
        std::chrono::milliseconds interval{0};          ///< zero for a call that runs once
    };

    std::chrono::milliseconds m_now{0};
    std::multimap<std::chrono::milliseconds, Call> m_calls;
};

}  // namespace tralio
