#pragma once

#include <QDBusArgument>
#include <QVariant>

namespace tralio {

/// What a peer has sent, if it is of the type that has this D-Bus signature, and else an empty value. Taking
/// something else apart in its way goes on without an end, or ends the process inside libdbus.
template <typename Value>
[[nodiscard]] Value busValue(const QVariant& sent, QLatin1StringView signature) {
    const bool isOfType = sent.metaType() == QMetaType::fromType<QDBusArgument>() &&
        sent.value<QDBusArgument>().currentSignature() == signature;
    return isOfType ? qdbus_cast<Value>(sent) : Value();
}

}  // namespace tralio
