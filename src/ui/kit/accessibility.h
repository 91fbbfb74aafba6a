#pragma once

namespace tralio {

/// Gives the parts that the toolkit does not know their roles for screen readers. The theme calls it, as
/// every part needs one.
void installAccessibleRoles();

}  // namespace tralio
