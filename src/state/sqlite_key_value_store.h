#pragma once

#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>

#include "state/key_value_store.h"

namespace tralio {

class SqliteDatabase;
class SqliteError;

/// The path of the user's values: tralio/tralio.sqlite in the user's data folder ($XDG_DATA_HOME, or
/// ~/.local/share).
[[nodiscard]] QString defaultStorePath();

/// The values in one SQLite file that only the user may read.
///
/// A written value is there at the next start however the process ends. A bad disk never stops the program: a
/// damaged file is set aside under another name, and a new one is begun with all values that are still known;
/// a value that cannot be read is set aside before it is overwritten; a value that cannot be written is kept
/// in memory, read from there, and written after the next write that succeeds. The debug log reports a
/// failure once, and once that all is written again; the user is informed through `trouble`.
///
/// Other processes may use the same file; one that locks it delays an operation by at most 0.2 s.
class SqliteKeyValueStore final : public KeyValueStore {
public:
    /// `path` is absolute. Missing folders are created.
    explicit SqliteKeyValueStore(QString path);
    /// Tries once more to write the unsaved values.
    ~SqliteKeyValueStore() override;

    [[nodiscard]] std::optional<StoredValue> value(const QString& key) const override;
    void setValue(const QString& key, StoredValue value) override;
    [[nodiscard]] Reading read(const QString& key) override;
    void preserve(const QString& key) override { m_preserved.insert(key); }
    void forgetOverwritten() override;

    /// The trouble that the user has not acknowledged yet. That a file was set aside is stored in the new one
    /// until the user has acknowledged it.
    [[nodiscard]] std::optional<StoreTrouble> trouble() const { return m_trouble; }
    void acknowledgeTrouble();
    /// Called at every change of `trouble`.
    std::function<void(std::optional<StoreTrouble>)> onTrouble;

private:
    void open();
    /// Throws if the value cannot be read.
    [[nodiscard]] std::optional<StoredValue> find(const QString& key) const;
    void remember(const QString& key, const StoredValue& value) const;
    [[nodiscard]] bool writeUnsaved(const QString& key);
    void writeAllUnsaved();
    [[nodiscard]] std::optional<StoredValue> known(const QString& key) const;
    /// Queues the known values of a lost file for writing. Returns whether these are all.
    bool bringBackKnown();
    void fail(QStringView operation, const SqliteError& error);
    void setTrouble(std::optional<StoreTrouble> trouble) const;

    const QString m_path;
    std::unique_ptr<SqliteDatabase> m_database;  ///< null while the file cannot be opened
    std::map<QString, StoredValue> m_unsaved;
    /// What was read, or found absent, or written, except large values
    mutable std::map<QString, std::optional<StoredValue>> m_known;
    mutable bool m_isLargeUnknown = false;  ///< a large value was left out of `m_known`
    /// keys whose stored values are set aside before they are overwritten
    mutable std::set<QString> m_preserved;
    mutable std::set<QString> m_unreadable;  ///< keys that the user was informed of
    mutable std::optional<StoreTrouble> m_trouble;
    bool m_wasOpen = false;  ///< `m_known` is of this file
    /// Values were lost with an earlier file, and this is not stored in the new one yet.
    bool m_isLossUntold = false;
    bool m_failing = false;                ///< a failure has been logged, but its end not yet
    bool m_unsavedIsAcknowledged = false;  ///< for the present failure
};

}  // namespace tralio
