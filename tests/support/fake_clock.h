#pragma once

#include "common/clock.h"
#include "support/testing.h"

namespace tralio {

/// A clock that advances only when a test says so.
struct FakeClock final : Clock {
    using Clock::after;
    using Clock::every;
    void after(std::chrono::milliseconds delay, QObject* context, std::function<void()> action) override {
        add(delay, context, std::move(action), {});
    }
    void every(std::chrono::milliseconds interval, QObject* context, std::function<void()> action) override {
        add(interval, context, std::move(action), interval);
    }

    /// Advances the time and runs the calls that fall due, in order of their times, including calls that they
    /// schedule.
    void advance(std::chrono::milliseconds by) {
        const auto until = m_now + by;
        while (!m_calls.empty() && m_calls.begin()->first <= until)
            runNext();
        m_now = until;
    }

    /// Advances the time as when the machine was suspended: calls that have fallen due run once, late, and
    /// none that they schedule.
    void standStill(std::chrono::milliseconds time) {
        m_now += time;
        while (!m_calls.empty() && m_calls.begin()->first < m_now)
            runNext();
    }

    /// The time by this clock.
    [[nodiscard]] std::chrono::milliseconds now() const { return m_now; }

    /// The number of calls still waiting.
    [[nodiscard]] qsizetype pending() const {
        return std::ranges::count_if(
            m_calls, [](const auto& entry) { return !entry.second.context.isNull(); });
    }

    /// The number of calls scheduled so far. It grows as well when one is put off.
    [[nodiscard]] qsizetype scheduled() const { return m_scheduled; }

private:
    struct Call {
        QPointer<QObject> context;
        /// Shared, so that a repeated action keeps its captured state.
        std::shared_ptr<std::function<void()>> action;
        std::chrono::milliseconds interval;  ///< zero for a call that runs once
    };

    void add(std::chrono::milliseconds delay, QObject* context, std::function<void()> action,
        std::chrono::milliseconds interval) {
        ++m_scheduled;
        m_calls.emplace(m_now + delay,
            Call{context, std::make_shared<std::function<void()>>(std::move(action)), interval});
    }

    /// Removes the next call and runs it; a repeating one is scheduled again after its interval.
    void runNext() {
        auto node = m_calls.extract(m_calls.begin());
        m_now = std::max(m_now, node.key());
        const Call call = node.mapped();
        if (!call.context)
            return;
        if (call.interval.count() > 0) {
            node.key() = m_now + call.interval;
            m_calls.insert(std::move(node));
        }
        (*call.action)();
    }

    std::chrono::milliseconds m_now{0};
    qsizetype m_scheduled = 0;
    std::multimap<std::chrono::milliseconds, Call> m_calls;
};

}  // namespace tralio
