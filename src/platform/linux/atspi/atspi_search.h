#pragma once

#include "platform/linux/atspi/atspi_element.h"

namespace tralio {

// Searches in an application's tree. The result is null when nothing is found within the context's time.

/// The active window of the context's process. The bus itself knows the processes, so that hung applications
/// in the list cost nothing.
[[nodiscard]] AtspiReference activeWindow(const AtspiContext& context);

/// The focused element of the active window; searched breadth first among the visible elements.
[[nodiscard]] AtspiReference searchFocus(const AtspiContext& context);

[[nodiscard]] AtspiReference searchMenuBar(const AtspiReference& window, const AtspiContext& context);

[[nodiscard]] bool isFocused(const AtspiReference& object, const AtspiQuestion& question);

}  // namespace tralio
