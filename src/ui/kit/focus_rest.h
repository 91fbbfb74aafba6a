#pragma once

#include <QWidget>

namespace tralio {

// The keyboard keeps its place in a panel when the part that has it hides: it rests on something beside,
// where Tab goes on from there and no key does any harm. Left to the toolkit it would go to a neighbour, and
// the second press of a key would hit that.

/// To be called before `leaving` hides. Returns whether it had the keyboard.
bool restFocus(QWidget& place, const QWidget& leaving);

/// Gives the keyboard that rests on `place` to a part that has come back there.
void wakeFocus(QWidget& place, QWidget& part);

}  // namespace tralio
