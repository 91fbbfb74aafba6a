#pragma once

#include "platform/linux/atspi/atspi_element.h"

namespace tralio {

// Looking for something in an application's tree. Null when it is not found within the context's time.

/// The active window of the process in question. Which process an application is the bus knows: hung ones in
/// the list cost nothing.
[[nodiscard]] AtspiReference activeWindow(const AtspiContext& context);

/// The focused element of the active window, among what is visible, breadth first.
[[nodiscard]] AtspiReference searchFocus(const AtspiContext& context);

[[nodiscard]] AtspiReference searchMenuBar(const AtspiReference& window, const AtspiContext& context);

[[nodiscard]] bool isFocused(const AtspiReference& object, const AtspiQuestion& question);

}  // namespace tralio
