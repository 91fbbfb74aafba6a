#pragma once

/// Who may look into a process of ours: the user's key, texts and pictures are in its memory.
namespace tralio::memory_privacy {

/// From now on no core is dumped. For the first line of a program. Processes stay readable for others of
/// the same user: the desktop portal reads /proc/<pid>/root of its callers, and refuses hot keys to one that
/// hides it.
void begin();

}  // namespace tralio::memory_privacy
