#pragma once

#include <QString>

#include <type_traits>
#include <utility>

#include "common/observable_object.h"
#include "engine/translation_tone.h"
#include "state/key_value_store.h"

namespace tralio {

/// An observable member that also lives in the store: `object.member()` reads, `object.member = value`
/// announces, assigns and then writes the value under its key. Every assignment is announced and written,
/// also one of an equal value. Constructing writes nothing; the owner decides what a stored value means.
template <typename T>
class Persisted final {
public:
    Persisted(ObservableObject& owner, KeyValueStore& store, QStringView key, T initial)
        : m_owner(owner), m_store(store), m_key(key.toString()), m_value(std::move(initial)) {}
    Persisted(const Persisted&) = delete;
    Persisted& operator=(const Persisted&) = delete;

    [[nodiscard]] const QString& key() const { return m_key; }
    [[nodiscard]] const T& operator()() const { return m_value; }

    Persisted& operator=(T value) {
        Q_EMIT m_owner.objectWillChange();
        m_value = std::move(value);
        m_store.setValue(m_key, stored(m_value));
        return *this;
    }

    /// Takes over what was read from the store: nobody is told and nothing is written.
    void load(T value) { m_value = std::move(value); }

private:
    static StoredValue stored(const T& value) {
        if constexpr (std::is_same_v<T, TranslationTone>)
            return value.rawValue();
        else if constexpr (std::is_same_v<T, quint32>)
            return qint64{value};
        else
            return value;
    }

    ObservableObject& m_owner;
    KeyValueStore& m_store;
    const QString m_key;
    T m_value;
};

}  // namespace tralio
