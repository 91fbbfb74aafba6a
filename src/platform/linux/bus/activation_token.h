#pragma once

#include <QString>

namespace tralio {

/// Stores an activation token from the compositor, which lets our next window come to the front. An empty one
/// is ignored.
void giveActivationToken(const QString& token);

/// The token that the program was started with, or the one that was given last; empty if there is none.
[[nodiscard]] QString activationToken();

}  // namespace tralio
