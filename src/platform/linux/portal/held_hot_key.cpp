#include "platform/linux/portal/held_hot_key.h"

#include <utility>

namespace tralio {
namespace {

using namespace std::chrono_literals;

/// The limit for desktops that do not report the release of a hot key.
constexpr auto longestHold = 1s;

}  // namespace

HeldHotKey::HeldHotKey(Clock& clock, std::function<void(HotKeyID)> count)
    : m_clock(clock), m_count(std::move(count)) {}

void HeldHotKey::press(HotKeyID id) {
    if (m_limit && m_id != id)
        end();
    m_id = id;
    // A desktop that repeats the press while the key is held restarts this.
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
