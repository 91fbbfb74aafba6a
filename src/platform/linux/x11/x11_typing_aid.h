#pragma once

#include "platform/linux/x11/x11_connection.h"

namespace tralio {

/// Whether the pointer is over a window beside the one with the focus that does not take the focus: the word
/// list of an input method, an on-screen keyboard, a notification. Panels do not count, although they may not
/// take the focus either, nor do window frames.
[[nodiscard]] bool isOverTypingAid(X11Connection& connection);

}  // namespace tralio
