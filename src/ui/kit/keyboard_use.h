#pragma once

#include <Qt>

class QKeyEvent;

namespace tralio {

/// Starts to record what the user does with keyboard and pointer, for the functions below. May be called
/// again.
void watchKeyboardUse();

/// Whether a focus that comes for `reason` is shown with a ring: only if the user moved it by keyboard. The
/// reason alone does not say: Qt also passes TabFocusReason when it moves the focus away from a widget that
/// is hidden by a click.
[[nodiscard]] bool isKeyboardFocus(Qt::FocusReason reason);

/// Whether a key press is the repeat of a held key.
[[nodiscard]] bool isRepeat(const QKeyEvent& press);

/// Reasons that take the focus away temporarily and later give it back to the same widget.
[[nodiscard]] bool isPassingFocus(Qt::FocusReason reason);

}  // namespace tralio
