#pragma once

class QWidget;

namespace tralio {

/// Moves the focus to the next or previous control, wrapping around, in the order of the layouts of `root`
/// and not of construction, and scrolls it into sight. Returns whether there is such a control.
bool moveFocus(QWidget& root, bool next);

}  // namespace tralio
