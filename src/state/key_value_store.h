#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <variant>

namespace tralio {

using StoredValue = std::variant<QString, bool, qint64, QByteArray>;

/// What is wrong with the place where the values are kept.
enum class StoreTrouble {
    unreadable,  ///< values were lost or cannot be read: one that is absent may be one that the user chose
    unsaved,     ///< values are kept in memory, and end with the program
};

/// The user's persistent values by key. Reports no errors: what cannot be read is absent, and what cannot be
/// written is kept for as long as the program runs. Used from the main thread.
class KeyValueStore {
public:
    KeyValueStore() = default;
    KeyValueStore(const KeyValueStore&) = delete;
    KeyValueStore& operator=(const KeyValueStore&) = delete;
    virtual ~KeyValueStore() = default;

    [[nodiscard]] virtual std::optional<StoredValue> value(const QString& key) const = 0;
    virtual void setValue(const QString& key, StoredValue value) = 0;

    /// Marks a stored value that its reader could not decode. Before it is overwritten it is moved to a key
    /// of its own, since the fault may be the reader's.
    virtual void preserve(const QString& key) = 0;

    /// Whether what is stored under `key` is not known yet; it reads as empty meanwhile.
    [[nodiscard]] virtual bool isAwaited(const QString& /*key*/) const { return false; }
    /// Takes back the values that were assigned since it was awaited.
    virtual void awaitAgain(const QString& /*key*/) {}

    /// Removes overwritten values from the disk, too, as far as a program can.
    virtual void forgetOverwritten() {}

    /// The readings of a value as one type. A value of another type reads as absent, except that booleans and
    /// integers read as each other.
    [[nodiscard]] std::optional<QString> text(const QString& key) const;
    [[nodiscard]] std::optional<bool> boolean(const QString& key) const;
    [[nodiscard]] std::optional<qint64> integer(const QString& key) const;
    [[nodiscard]] std::optional<QByteArray> data(const QString& key) const;
};

}  // namespace tralio
