#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <variant>

namespace tralio {

using StoredValue = std::variant<QString, bool, qint64, QByteArray>;

/// What is wrong with the storage of the values.
enum class StoreTrouble {
    unreadable,  ///< values were lost or cannot be read: one that is absent may have been chosen by the user
    unsaved,     ///< values are only in memory, and will be lost when the program ends
};

/// What a reader finds that can come again.
struct Reading {
    std::optional<StoredValue> value;
    bool isPutOff = false;  ///< the store cannot be read for now, and `value` is absent for this reason only
};

/// The user's persistent values by key. Reports no errors: a value that cannot be read is absent, and one
/// that cannot be written is kept while the program runs. Used from the main thread.
class KeyValueStore {
public:
    KeyValueStore() = default;
    KeyValueStore(const KeyValueStore&) = delete;
    KeyValueStore& operator=(const KeyValueStore&) = delete;
    virtual ~KeyValueStore() = default;

    [[nodiscard]] virtual std::optional<StoredValue> value(const QString& key) const = 0;
    virtual void setValue(const QString& key, StoredValue value) = 0;

    /// As `value`, for a reader that comes again if it is put off.
    [[nodiscard]] virtual Reading read(const QString& key) { return {value(key)}; }

    /// Marks a stored value that its reader could not decode. Before it is overwritten it is moved to a key
    /// of its own, since the fault may be the reader's.
    virtual void preserve(const QString& key) = 0;

    /// Whether the value of `key` has not arrived yet; until then it reads as empty.
    [[nodiscard]] virtual bool isAwaited(const QString& /*key*/) const { return false; }
    /// Drops what was assigned to `key` since it was awaited, and waits for its value again.
    virtual void awaitAgain(const QString& /*key*/) {}

    /// Removes overwritten values from the disk, too, as far as a program can.
    virtual void forgetOverwritten() {}

    /// The value of `key` as one type. A value of another type reads as absent, except that booleans and
    /// integers read as each other.
    [[nodiscard]] std::optional<QString> text(const QString& key) const;
    [[nodiscard]] std::optional<bool> boolean(const QString& key) const;
    [[nodiscard]] std::optional<qint64> integer(const QString& key) const;
    [[nodiscard]] std::optional<QByteArray> data(const QString& key) const;
};

}  // namespace tralio
