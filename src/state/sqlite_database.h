#pragma once

#include <QString>

#include <chrono>
#include <exception>
#include <memory>
#include <optional>

#include "state/key_value_store.h"

struct sqlite3;
struct sqlite3_stmt;

namespace tralio {

/// A call of SQLite that failed.
class SqliteError final : public std::exception {
public:
    explicit SqliteError(int extendedCode) : m_code(extendedCode) {}

    /// Whether the content of the file is damaged, in contrast to a fault of the disk or of the access to it.
    [[nodiscard]] bool isDamage() const;
    /// Whether the stored value is none that this program writes.
    [[nodiscard]] bool isForeignValue() const;
    /// Whether another connection locks the file.
    [[nodiscard]] bool isLock() const;
    /// Whether the file, or a side file of SQLite, could not be opened or created.
    [[nodiscard]] bool isAccess() const;

    /// SQLite's fixed text for the code. It never contains a value, so it may be logged.
    [[nodiscard]] QString description() const;

private:
    int m_code;
};

/// An open database file with its one table of values by key. Operations throw `SqliteError` on failure.
class SqliteDatabase final {
public:
    /// Opens the file, and creates the table in an empty one. Throws an error with `isDamage()` if the file
    /// does not pass SQLite's integrity check. A file that cannot be written is opened for reading.
    [[nodiscard]] static std::unique_ptr<SqliteDatabase> open(
        const QString& path, std::chrono::milliseconds patience);
    SqliteDatabase(const SqliteDatabase&) = delete;
    SqliteDatabase& operator=(const SqliteDatabase&) = delete;

    /// Absent if there is no value; throws if the stored one is none that this program writes.
    [[nodiscard]] std::optional<StoredValue> read(const QString& key);

    /// Once this has returned, the value is kept however the process ends. A power cut may lose the last
    /// writes, but does not damage the file: waiting for the disk at every key press would be noticeable.
    void write(const QString& key, const StoredValue& value);

    /// Moves the value, if there is one, to the first free key of the form "<key>.damaged-<number>".
    void setAside(const QString& key);

    /// Checkpoints the write-ahead log, if any, into the database file and truncates it, so that overwritten
    /// values are gone from the disk. Does nothing while another connection reads.
    void emptyLog();

    /// Whether writing can succeed: not if the file has been removed or replaced, or could not be opened
    /// normally. Opening it again may help.
    [[nodiscard]] bool takesWrites() const;

    /// How long an operation waits while another process locks the file.
    void setPatience(std::chrono::milliseconds patience);

private:
    struct Closer {
        void operator()(sqlite3* database) const;
        void operator()(sqlite3_stmt* statement) const;
    };
    using Handle = std::unique_ptr<sqlite3, Closer>;
    using Statement = std::unique_ptr<sqlite3_stmt, Closer>;

    /// `makeshift` locks other programs out; it is used until the file can be opened normally.
    enum class Use { shared, makeshift };

    SqliteDatabase(const QByteArray& name, int flags, std::chrono::milliseconds patience, Use use);

    [[nodiscard]] Statement prepare(const char* sql) const;
    void check(int code) const;
    void checkIntegrity() const;
    [[nodiscard]] bool hasMoved() const;

    Use m_use;
    Handle m_handle;  // declared before the statements, so that it is closed after them
    Statement m_select;
    Statement m_upsert;
};

}  // namespace tralio
