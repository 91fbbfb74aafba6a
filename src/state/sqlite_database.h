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

    /// Whether the content of the file is at fault, and not the disk or the access to it.
    [[nodiscard]] bool isDamage() const;
    /// Whether what is stored is none of our values any more.
    [[nodiscard]] bool isForeignValue() const;
    /// Whether the file, or one that SQLite needs beside it, could not be opened or created.
    [[nodiscard]] bool isAccess() const;

    /// SQLite's fixed text for the code: never part of a value, so that it may be logged.
    [[nodiscard]] QString description() const;

private:
    int m_code;
};

/// An open database file with its one table of values by key. Operations that fail throw `SqliteError`.
class SqliteDatabase final {
public:
    /// Opens the file, creating the table in an empty one; throws an error that `isDamage()` when the file
    /// does not pass SQLite's integrity check. A file that cannot be written is opened for reading.
    [[nodiscard]] static std::unique_ptr<SqliteDatabase> open(
        const QString& path, std::chrono::milliseconds patience);
    SqliteDatabase(const SqliteDatabase&) = delete;
    SqliteDatabase& operator=(const SqliteDatabase&) = delete;

    /// Absent when there is no value; one that is none of ours any more is an error.
    [[nodiscard]] std::optional<StoredValue> read(const QString& key);

    /// When this returns, the value outlives the process however it ends. (A power cut may take the last
    /// writes, not the file: waiting for the disk at every key press would be felt.)
    void write(const QString& key, const StoredValue& value);

    /// Gives the value, if there is one, the first free key of the form "<key>.damaged-<number>".
    void setAside(const QString& key);

    /// Checkpoints the write-ahead log into the database file and truncates it, so that overwritten values
    /// are gone from the disk. Does nothing while another connection reads.
    void emptyLog();

    /// Whether writing makes sense: not once the file has been removed or replaced, nor when it could not be
    /// opened as usual. Opening it anew may help.
    [[nodiscard]] bool takesWrites() const;

    /// How long an operation waits for another process that locks the file.
    void setPatience(std::chrono::milliseconds patience);

private:
    struct Closer {
        void operator()(sqlite3* database) const;
        void operator()(sqlite3_stmt* statement) const;
    };
    using Handle = std::unique_ptr<sqlite3, Closer>;
    using Statement = std::unique_ptr<sqlite3_stmt, Closer>;

    /// A makeshift keeps other programs out and is for the time until the file can be opened as usual.
    enum class Use { shared, makeshift };

    SqliteDatabase(const QByteArray& name, int flags, std::chrono::milliseconds patience, Use use);

    [[nodiscard]] Statement prepare(const char* sql) const;
    void check(int code) const;
    void checkIntegrity() const;
    [[nodiscard]] bool hasMoved() const;

    Use m_use;
    Handle m_handle;  // closed after the statements are gone
    Statement m_select;
    Statement m_upsert;
};

}  // namespace tralio
