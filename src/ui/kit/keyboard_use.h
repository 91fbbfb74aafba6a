#pragma once

#include <Qt>

namespace tralio {

/// Begins to watch what the user last used, for `isKeyboardFocus`. Once is enough.
void watchKeyboardUse();

/// Whether the focus that comes for `reason` shows: the user moves it by keyboard. The toolkit gives the
/// reason of the Tab key also when it moves the focus by itself, away from what is hidden under the mouse.
[[nodiscard]] bool isKeyboardFocus(Qt::FocusReason reason);

/// Reasons that take the focus away for a while and give it back to where it was.
[[nodiscard]] bool isPassingFocus(Qt::FocusReason reason);

}  // namespace tralio
