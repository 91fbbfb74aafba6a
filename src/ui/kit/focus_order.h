#pragma once

class QWidget;

namespace tralio {

/// Moves the keyboard to the control after or before the one that has it, around and in the order in which
/// the layouts of `root` place them, whatever was made last. Answers whether there is one.
bool moveFocus(QWidget& root, bool next);

}  // namespace tralio
