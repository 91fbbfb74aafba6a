#include "state/persisted.h"

#include <limits>

namespace tralio {

QString read(const KeyValueStore& store, const QString& key, QString otherwise) {
    return store.text(key).value_or(std::move(otherwise));
}

bool isInRange(qint64 number) {
    return number >= 0 && number <= std::numeric_limits<quint32>::max();
}

bool read(const KeyValueStore& store, const QString& key, bool otherwise) {
    return store.value(key) ? store.boolean(key).value_or(false) : otherwise;
}

quint32 read(const KeyValueStore& store, const QString& key, quint32 otherwise) {
    const qint64 number = store.integer(key).value_or(0);
    return isInRange(number) ? static_cast<quint32>(number) : otherwise;
}

TranslationTone read(const KeyValueStore& store, const QString& key, TranslationTone otherwise) {
    const auto stored = store.text(key);
    return stored ? TranslationTone::fromRawValue(*stored).value_or(otherwise) : otherwise;
}

}  // namespace tralio
