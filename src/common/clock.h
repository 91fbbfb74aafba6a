#pragma once

#include <chrono>
#include <functional>

class QObject;

namespace tralio {

/// Time as the services see it, so that what waits can be tested tick by tick.
///
/// Actions run on the thread that scheduled them, from its event loop, and never after their `context` is
/// gone: deleting the context is how a call is taken back.
class Clock {
public:
    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock() = default;

    /// Runs `action` once, `delay` from now. A delay of zero means the next turn of the event loop.
    virtual void after(std::chrono::milliseconds delay, QObject* context, std::function<void()> action) = 0;

    /// Runs `action` every `interval`, for the first time one interval from now.
    virtual void every(
        std::chrono::milliseconds interval, QObject* context, std::function<void()> action) = 0;
};

/// The real time.
class SystemClock final : public Clock {
public:
    void after(std::chrono::milliseconds delay, QObject* context, std::function<void()> action) override;
    void every(std::chrono::milliseconds interval, QObject* context, std::function<void()> action) override;
};

}  // namespace tralio
