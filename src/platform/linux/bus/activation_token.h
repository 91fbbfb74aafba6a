#pragma once

#include <QString>

namespace tralio {

/// Keeps a token of the compositor's that lets our next window come to the front. Empty ones are none.
void giveActivationToken(const QString& token);

/// The token that the program was started with, or was given last; empty when there is none.
[[nodiscard]] QString activationToken();

}  // namespace tralio
