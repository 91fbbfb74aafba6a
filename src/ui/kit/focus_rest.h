#pragma once

#include <QWidget>

namespace tralio {

// Keeps the focus in its panel when the widget that has it is hidden: the focus rests on a neighbouring
// widget that ignores keys, and Tab goes on from there. Qt would move the focus to the next control, and a
// second press of the same key would trigger that.

/// Moves the focus from `leaving` or its children to `place`. Call before `leaving` is hidden. Returns
/// whether it had the focus.
bool restFocus(QWidget& place, const QWidget& leaving);

/// Moves the focus that rests on `place` to `part`, which is shown again.
void wakeFocus(QWidget& place, QWidget& part);

}  // namespace tralio
