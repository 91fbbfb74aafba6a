#include "platform/linux/bus/activation_token.h"

namespace tralio {
namespace {

/// Qt looks for the token here, as every started program does, and unsets the variable once it has used it.
constexpr auto tokenVariable = "XDG_ACTIVATION_TOKEN";

}  // namespace

void giveActivationToken(const QString& token) {
    if (!token.isEmpty())
        qputenv(tokenVariable, token.toUtf8());
}

QString activationToken() {
    return qEnvironmentVariable(tokenVariable);
}

}  // namespace tralio
