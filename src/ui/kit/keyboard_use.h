#pragma once

#include <Qt>

class QKeyEvent;

namespace tralio {

/// Begins to watch what the user last used, for the questions below. Once is enough.
void watchKeyboardUse();

/// Whether the focus that comes for `reason` shows: the user moves it by keyboard. The toolkit gives the
/// reason of the Tab key also when it moves the focus by itself, away from what is hidden under the mouse.
[[nodiscard]] bool isKeyboardFocus(Qt::FocusReason reason);

/// Whether a key goes down because it is held, and no hand has pressed it anew.
[[nodiscard]] bool isRepeat(const QKeyEvent& press);

/// Reasons that take the focus away for a while and give it back to where it was.
[[nodiscard]] bool isPassingFocus(Qt::FocusReason reason);

}  // namespace tralio
