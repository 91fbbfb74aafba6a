#include "platform/linux/bus/activation_token.h"

namespace tralio {
namespace {

/// Where the toolkit, like every program that is started, looks for the token; it takes the token away when
/// it has used it.
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
