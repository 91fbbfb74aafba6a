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

/// Where the user's values are kept: tralio/tralio.sqlite in the user's data folder ($XDG_DATA_HOME, or
/// ~/.local/share).
[[nodiscard]] QString defaultStorePath();

/// The values in one SQLite file that only the user may read.
///
/// A written value is there on the next start however the process ends. A bad disk never stops the program: a
/// damaged file is set aside under another name and a new one begun, which gets what is known of the old one;
/// a value that cannot be read is set aside before another takes its place; a value that could not be written
/// is kept here, read back from here, and written after the next write that succeeds. The debug log says so
/// once, and once more when all is written; for the user there is `trouble`.
///
/// Another process may use the same file; one that locks it delays an operation by 0.2 s at most.
class SqliteKeyValueStore final : public KeyValueStore {
public:
    /// `path` is absolute. Folders that are missing on the way to it are created.
    explicit SqliteKeyValueStore(QString path);
    /// Tries once more to write what could not be written.
    ~SqliteKeyValueStore() override;

    [[nodiscard]] std::optional<StoredValue> value(const QString& key) const override;
    void setValue(const QString& key, StoredValue value) override;
    void preserve(const QString& key) override { m_preserved.insert(key); }
    void forgetOverwritten() override;

    /// What the user has not acknowledged yet. That a file was set aside is remembered in the new one, until
    /// the user has seen it.
    [[nodiscard]] std::optional<StoreTrouble> trouble() const { return m_trouble; }
    void acknowledgeTrouble();
    /// Told of every change of `trouble`.
    std::function<void(std::optional<StoreTrouble>)> onTrouble;

private:
    void open();
    void remember(const QString& key, const StoredValue& value) const;
    [[nodiscard]] bool writeUnsaved(const QString& key);
    void writeAllUnsaved();
    [[nodiscard]] std::optional<StoredValue> known(const QString& key) const;
    /// Has what is known of a lost file written again; whether that is all.
    bool bringBackKnown();
    void fail(QStringView operation, const SqliteError& error);
    void setTrouble(std::optional<StoreTrouble> trouble) const;

    const QString m_path;
    std::unique_ptr<SqliteDatabase> m_database;  ///< null while the file cannot be opened
    std::map<QString, StoredValue> m_unsaved;
    mutable std::map<QString, StoredValue> m_known;  ///< what was read or written, but for what is large
    mutable bool m_isLargeUnknown = false;           ///< something large was left out
    mutable std::set<QString> m_preserved;   ///< whose stored values are set aside before they are written
    mutable std::set<QString> m_unreadable;  ///< of which the user was told
    mutable std::optional<StoreTrouble> m_trouble;
    bool m_wasOpen = false;  ///< what is known is of this file
    /// Something was lost with an earlier file, and the new one does not say so yet.
    bool m_isLossUntold = false;
    bool m_failing = false;                ///< a failure is in the log, and not yet that it is over
    bool m_unsavedIsAcknowledged = false;  ///< of the failure that goes on
};

}  // namespace tralio
