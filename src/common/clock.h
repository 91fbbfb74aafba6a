#pragma once

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace tralio {

/// A call that a `Clock` will make. Destroying or overwriting this object cancels it.
class [[nodiscard]] ScheduledCall final {
public:
    ScheduledCall() = default;
    explicit ScheduledCall(std::unique_ptr<QObject> context) : m_context(std::move(context)) {}

    void takeBack() { m_context.reset(); }

    /// Whether a call was scheduled and not cancelled; it may have been made already.
    [[nodiscard]] explicit operator bool() const { return m_context != nullptr; }

private:
    std::unique_ptr<QObject> m_context;
};

/// Time as the services see it, so that waiting can be tested tick by tick.
///
/// Actions run on the thread that scheduled them, from its event loop, and never after their `context` or
/// their `ScheduledCall` is destroyed.
class Clock {
public:
    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock() = default;

    /// Runs `action` once, after `delay`. A delay of zero means the next turn of the event loop.
    virtual void after(std::chrono::milliseconds delay, QObject* context, std::function<void()> action) = 0;

    /// Runs `action` every `interval`, first after one interval.
    virtual void every(
        std::chrono::milliseconds interval, QObject* context, std::function<void()> action) = 0;

    /// The same for a call that its holder may cancel.
    ScheduledCall after(std::chrono::milliseconds delay, std::function<void()> action) {
        auto context = std::make_unique<QObject>();
        after(delay, context.get(), std::move(action));
        return ScheduledCall(std::move(context));
    }
    ScheduledCall every(std::chrono::milliseconds interval, std::function<void()> action) {
        auto context = std::make_unique<QObject>();
        every(interval, context.get(), std::move(action));
        return ScheduledCall(std::move(context));
    }
};

/// The real time.
class SystemClock final : public Clock {
public:
    using Clock::after;
    using Clock::every;
    void after(std::chrono::milliseconds delay, QObject* context, std::function<void()> action) override;
    void every(std::chrono::milliseconds interval, QObject* context, std::function<void()> action) override;
};

}  // namespace tralio
