#pragma once

/// Who may look into this process: the user's key and texts are in its memory.
namespace tralio::memory_privacy {

/// From now on no other process of the user may, and no core is dumped. For the first line of a program.
void begin();

/// While one lives, others may again: what the desktop portal needs of a caller whom it does not know yet is
/// among what the system then hides (/proc/<pid>/root). Changes nothing where privacy has not begun.
class Suspension final {
public:
    Suspension();
    Suspension(const Suspension&) = delete;
    Suspension& operator=(const Suspension&) = delete;
    ~Suspension();

private:
    bool m_wasPrivate;
};

}  // namespace tralio::memory_privacy
