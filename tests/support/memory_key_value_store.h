#pragma once

#include <map>
#include <utility>
#include <vector>

#include "state/key_value_store.h"

namespace tralio {

/// A store that keeps its values in memory and remembers every write, in order.
class MemoryKeyValueStore : public KeyValueStore {
public:
    explicit MemoryKeyValueStore(std::map<QString, StoredValue> values = {}) : values(std::move(values)) {}

    [[nodiscard]] std::optional<StoredValue> value(const QString& key) const override {
        const auto entry = values.find(key);
        return entry == values.end() ? std::nullopt : std::optional(entry->second);
    }

    void setValue(const QString& key, StoredValue value) override {
        writes.emplace_back(key, value);
        values.insert_or_assign(key, std::move(value));
    }

    std::map<QString, StoredValue> values;
    std::vector<std::pair<QString, StoredValue>> writes;
};

}  // namespace tralio
