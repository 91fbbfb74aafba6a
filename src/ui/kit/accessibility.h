#pragma once

class QWidget;

namespace tralio {

/// Gives the parts that the toolkit does not know their roles for screen readers. The theme calls it, as
/// every part needs one.
void installAccessibleRoles();

/// Has screen readers say what stands on `news`, wherever the user is: now, or when it comes into sight. For
/// what the keyboard does not lead to. It is news until another name stands there or it is hidden.
void announce(QWidget& news);

}  // namespace tralio
