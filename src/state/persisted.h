#pragma once

#include <QString>

#include <algorithm>
#include <functional>
#include <type_traits>
#include <utility>
#include <vector>

#include "common/observable_object.h"
#include "engine/translation_tone.h"
#include "state/key_value_store.h"

namespace tralio {

/// Whether a stored number fits into 32 bits.
[[nodiscard]] bool isInRange(qint64 number);

/// How a stored value of each kind is read. One that is missing or invalid gives `otherwise`, with two
/// exceptions: a stored value that is no boolean reads as false, and a number that is missing or of another
/// type as 0.
[[nodiscard]] QString read(const KeyValueStore& store, const QString& key, QString otherwise);
[[nodiscard]] bool read(const KeyValueStore& store, const QString& key, bool otherwise);
[[nodiscard]] quint32 read(const KeyValueStore& store, const QString& key, quint32 otherwise);
[[nodiscard]] TranslationTone read(const KeyValueStore& store, const QString& key, TranslationTone otherwise);

template <typename T>
class Persisted;

/// Whether a reset restores the default of a setting.
enum class OnReset { isRestored, stays };

/// The settings of one object that are loaded and reset together, in the order of their declaration.
class PersistedGroup final {
public:
    PersistedGroup(ObservableObject& owner, KeyValueStore& store) : m_owner(owner), m_store(store) {}
    PersistedGroup(const PersistedGroup&) = delete;
    PersistedGroup& operator=(const PersistedGroup&) = delete;

    /// Reads the stored values: nothing is announced and nothing is written.
    void load() {
        for (const Member& member : m_members)
            member.load();
    }
    /// Assigns the defaults.
    void reset() {
        for (const Member& member : m_members)
            if (member.onReset == OnReset::isRestored)
                member.reset();
    }
    /// Whether a reset would change nothing.
    [[nodiscard]] bool isReset() const {
        return std::all_of(
            m_members.begin(), m_members.end(),
            [](const Member& member) { return member.onReset == OnReset::stays || member.isReset(); });
    }
    /// A function that assigns the present values to the settings that a reset changes. The group must
    /// outlive it.
    [[nodiscard]] std::function<void()> remembered() const {
        std::vector<std::function<void()>> values;
        for (const Member& member : m_members)
            if (member.onReset == OnReset::isRestored)
                values.push_back(member.remember());
        return [values = std::move(values)] {
            for (const auto& assign : values)
                assign();
        };
    }

private:
    template <typename T>
    friend class Persisted;

    struct Member {
        std::function<void()> load;
        std::function<void()> reset;
        std::function<bool()> isReset;
        std::function<std::function<void()>()> remember;
        OnReset onReset;
    };

    ObservableObject& m_owner;
    KeyValueStore& m_store;
    std::vector<Member> m_members;
};

/// An observable member that is also stored: `object.member()` reads, `object.member = value` announces the
/// change, assigns, and then writes the value under its key. Every assignment is announced and written, even
/// of an equal value. The constructor neither reads nor writes.
template <typename T>
class Persisted final {
public:
    Persisted(PersistedGroup& group, QStringView key, T initial, OnReset onReset = OnReset::isRestored)
        : m_group(group), m_key(key.toString()), m_default(std::move(initial)), m_value(m_default) {
        group.m_members.push_back(
            {[this] { load(); }, [this] { *this = m_default; }, [this] { return m_value == m_default; },
                [this] { return [this, value = m_value] { *this = value; }; }, onReset});
    }
    Persisted(const Persisted&) = delete;
    Persisted& operator=(const Persisted&) = delete;

    [[nodiscard]] const QString& key() const { return m_key; }
    [[nodiscard]] const T& operator()() const { return m_value; }

    Persisted& operator=(T value) {
        Q_EMIT m_group.m_owner.objectWillChange();
        m_value = std::move(value);
        m_group.m_store.setValue(m_key, stored(m_value));
        return *this;
    }

    /// Replaces the value: nothing is announced and nothing is written.
    void load(T value) { m_value = std::move(value); }

private:
    void load() { m_value = read(m_group.m_store, m_key, T(m_default)); }

    static StoredValue stored(const T& value) {
        if constexpr (std::is_same_v<T, TranslationTone>)
            return value.rawValue();
        else if constexpr (std::is_same_v<T, quint32>)
            return qint64{value};
        else
            return value;
    }

    PersistedGroup& m_group;
    const QString m_key;
    const T m_default;
    T m_value;
};

}  // namespace tralio
