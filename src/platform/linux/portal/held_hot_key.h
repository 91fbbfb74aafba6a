#pragma once

#include <functional>
#include <optional>

#include "common/clock.h"
#include "hotkeys/hot_key_platform.h"

namespace tralio {

/// The hot key that is held down. It counts when it is released, because the keyboard focus must not move
/// before that: mutter does not deliver the release to the newly focused window, and an X program then
/// repeats the key for ever.
class HeldHotKey final {
public:
    /// `count` is called for each hot key when it is released, or when the desktop has reported neither its
    /// release nor a repeat for too long.
    HeldHotKey(Clock& clock, std::function<void(HotKeyID)> count);

    /// Called again for a key that is already down: the desktop repeats it.
    void press(HotKeyID id);
    void letGo(HotKeyID id);

private:
    void end();

    Clock& m_clock;
    std::function<void(HotKeyID)> m_count;
    HotKeyID m_id{};
    ScheduledCall m_limit;  ///< active while a hot key is down
};

}  // namespace tralio
