#pragma once

/// Protects the memory of our processes, which contains the user's key, texts and pictures.
namespace tralio::memory_privacy {

/// Switches core dumps off. Call it first in a program. Processes stay readable for others of the same user:
/// the desktop portal reads /proc/<pid>/root of its callers, and refuses hot keys to a process that hides it.
void begin();

}  // namespace tralio::memory_privacy
