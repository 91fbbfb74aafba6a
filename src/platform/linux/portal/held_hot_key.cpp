#include "platform/linux/portal/held_hot_key.h"

#include <utility>

namespace tralio {
namespace {

using namespace std::chrono_literals;

/// Of a hot key on a desktop that does not tell when it is let go.
constexpr auto longestHold = 1s;

}  // namespace

HeldHotKey::HeldHotKey(Clock& clock, std::function<void(HotKeyID)> count)
    : m_clock(clock), m_count(std::move(count)) {}

void HeldHotKey::press(HotKeyID id) {
    if (m_limit && m_id != id)
        end();
    m_id = id;
    // A desktop that repeats it while it is held puts this off.
    m_limit = m_clock.after(longestHold, [this] { end(); });
}

void HeldHotKey::letGo(HotKeyID id) {
    if (m_limit && m_id == id)
        end();
}

void HeldHotKey::end() {
    const ScheduledCall over = std::exchange(m_limit, {});
    m_count(m_id);
}

}  // namespace tralio
