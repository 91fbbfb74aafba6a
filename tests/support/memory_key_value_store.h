#pragma once

#include <set>

#include "state/key_value_store.h"
#include "support/testing.h"

namespace tralio {

/// A store that keeps its values in memory and records every write, in order.
struct MemoryKeyValueStore : KeyValueStore {
    explicit MemoryKeyValueStore(std::map<QString, StoredValue> values = {}) : values(std::move(values)) {}

    [[nodiscard]] std::optional<StoredValue> value(const QString& key) const override {
        const auto entry = values.find(key);
        return entry == values.end() ? std::nullopt : std::optional(entry->second);
    }

    void setValue(const QString& key, StoredValue value) override {
        if (const auto old = values.find(key); old != values.end() && preserved.erase(key) > 0)
            values.insert_or_assign(key + QStringLiteral(".damaged-1"), old->second);
        writes.emplace_back(key, value);
        values.insert_or_assign(key, std::move(value));
    }

    void preserve(const QString& key) override { preserved.insert(key); }
    void forgetOverwritten() override { ++timesForgotten; }

    std::map<QString, StoredValue> values;
    std::set<QString> preserved;
    std::vector<std::pair<QString, StoredValue>> writes;
    int timesForgotten = 0;
};

}  // namespace tralio
