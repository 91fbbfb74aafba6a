#pragma once

#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// Whether the pointer is over a window that is there beside the one with the keyboard and leaves it there:
/// the list of an input method's words, a keyboard on the screen, a notification. A panel is none, though it
/// may take no keyboard either, nor is the frame of a window.
[[nodiscard]] bool isOverTypingAid(X11Connection& connection);

}  // namespace tralio
