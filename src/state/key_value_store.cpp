#include "state/key_value_store.h"

namespace tralio {
namespace {

template <typename T>
std::optional<T> as(const std::optional<StoredValue>& value) {
    const T* held = value ? std::get_if<T>(&*value) : nullptr;
    return held ? std::optional(*held) : std::nullopt;
}

}  // namespace

std::optional<QString> KeyValueStore::text(const QString& key) const {
    return as<QString>(value(key));
}

std::optional<bool> KeyValueStore::boolean(const QString& key) const {
    const auto stored = value(key);
    if (const auto number = as<qint64>(stored))
        return *number != 0;
    return as<bool>(stored);
}

std::optional<qint64> KeyValueStore::integer(const QString& key) const {
    const auto stored = value(key);
    if (const auto boolean = as<bool>(stored))
        return *boolean ? 1 : 0;
    return as<qint64>(stored);
}

std::optional<QByteArray> KeyValueStore::data(const QString& key) const {
    return as<QByteArray>(value(key));
}

}  // namespace tralio
