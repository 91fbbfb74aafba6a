#include "support/fake_clock.h"

#include <algorithm>
#include <utility>

namespace tralio {

void FakeClock::after(std::chrono::milliseconds delay, QObject* context, std::function<void()> action) {
    m_calls.emplace(m_now + delay, Call{context, std::make_shared<std::function<void()>>(std::move(action))});
}

void FakeClock::every(std::chrono::milliseconds interval, QObject* context, std::function<void()> action) {
    m_calls.emplace(m_now + interval,
        Call{context, std::make_shared<std::function<void()>>(std::move(action)), interval});
}

void FakeClock::runNext() {
    auto node = m_calls.extract(m_calls.begin());
    m_now = std::max(m_now, node.key());
    Call& call = node.mapped();
    if (!call.context)
        return;
    const auto action = call.action;
    if (call.interval.count() > 0) {
        node.key() = m_now + call.interval;
        m_calls.insert(std::move(node));
    }
    (*action)();
}

void FakeClock::advance(std::chrono::milliseconds by) {
    const auto until = m_now + by;
    while (!m_calls.empty() && m_calls.begin()->first <= until)
        runNext();
    m_now = until;
}

void FakeClock::standStill(std::chrono::milliseconds time) {
    m_now += time;
    while (!m_calls.empty() && m_calls.begin()->first < m_now)
        runNext();
}

qsizetype FakeClock::pending() const {
    return std::count_if(
        m_calls.begin(), m_calls.end(), [](const auto& entry) { return !entry.second.context.isNull(); });
}

}  // namespace tralio
