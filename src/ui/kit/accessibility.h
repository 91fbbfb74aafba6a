#pragma once

class QWidget;

namespace tralio {

/// Gives our widgets, which Qt does not know, their roles for screen readers. Called by the theme, since
/// every widget needs it.
void installAccessibleRoles();

/// Lets screen readers read out the accessible name of `news`, wherever the focus is: now, or when `news`
/// becomes visible. For widgets that cannot have the focus. The widget counts as news until its name changes
/// or it is hidden.
void announce(QWidget& news);

}  // namespace tralio
