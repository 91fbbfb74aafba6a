#pragma once

#include <QDBusArgument>
#include <QVariant>

namespace tralio {

/// The value that a peer sent, or a default-constructed one if its D-Bus signature is another. WORKAROUND:
/// demarshalling a value of another type with qdbus_cast (Qt 6.4) never returns, or aborts inside libdbus.
template <typename Value>
[[nodiscard]] Value busValue(const QVariant& sent, QLatin1StringView signature) {
    const bool isOfType = sent.metaType() == QMetaType::fromType<QDBusArgument>() &&
        sent.value<QDBusArgument>().currentSignature() == signature;
    return isOfType ? qdbus_cast<Value>(sent) : Value();
}

}  // namespace tralio
