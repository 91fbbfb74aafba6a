#include "state/sqlite_database.h"

#include <QFile>
#include <QStringDecoder>
#include <QUrl>

#include <array>
#include <sqlite3.h>

#include "state/store_file.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr int primaryCodeMask = 0xff;

/// The names in the column `type`, in the order of the alternatives of `StoredValue`.
constexpr std::array<QByteArrayView, std::variant_size_v<StoredValue>> typeNames = {
    "text", "boolean", "integer", "binary"};

void throwUnless(int wanted, int code) {
    if (code != wanted)
        throw SqliteError(code);
}

/// Strict: QString::fromUtf8 would drop a byte order mark even where it is part of the text, and replace
/// invalid bytes, which this program never wrote.
QString textOf(const QByteArray& utf8) {
    QStringDecoder decoder(
        QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom | QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(utf8);
    if (decoder.hasError())
        throw SqliteError(SQLITE_MISMATCH);
    return text;
}

/// One use of a prepared statement: after its destruction the statement holds neither a lock nor references
/// to bound values.
class Execution final {
public:
    explicit Execution(sqlite3_stmt* statement) : m_statement(statement) {}
    Execution(const Execution&) = delete;
    Execution& operator=(const Execution&) = delete;
    ~Execution() {
        sqlite3_reset(m_statement);
        sqlite3_clear_bindings(m_statement);
    }

    // Bound values must outlive this object.
    void bindText(int index, QByteArrayView utf8) {
        const char* bytes = utf8.isNull() ? "" : utf8.data();  // a null pointer would be bound as NULL
        throwUnless(SQLITE_OK,
            sqlite3_bind_text64(m_statement, index, bytes, quint64(utf8.size()), SQLITE_STATIC, SQLITE_UTF8));
    }
    void bindBinary(int index, const QByteArray& bytes) {
        throwUnless(SQLITE_OK,
            sqlite3_bind_blob64(m_statement, index, bytes.constData(), quint64(bytes.size()), SQLITE_STATIC));
    }
    void bindInteger(int index, qint64 number) {
        throwUnless(SQLITE_OK, sqlite3_bind_int64(m_statement, index, number));
    }

    /// Whether there is a row to read.
    [[nodiscard]] bool step() {
        const int code = sqlite3_step(m_statement);
        if (code != SQLITE_ROW)
            throwUnless(SQLITE_DONE, code);
        return code == SQLITE_ROW;
    }

    [[nodiscard]] QByteArray column(int index) {
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(m_statement, index));
        return {bytes, sqlite3_column_bytes(m_statement, index)};
    }
    [[nodiscard]] qint64 integerColumn(int index) { return sqlite3_column_int64(m_statement, index); }

private:
    sqlite3_stmt* m_statement;
};

}  // namespace

bool SqliteError::isDamage() const {
    switch (m_code & primaryCodeMask) {
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
        case SQLITE_ERROR:  // our few statements can fail in this way only on tables of another program
            return true;
        default:
            return false;
    }
}

bool SqliteError::isForeignValue() const {
    return m_code == SQLITE_MISMATCH;
}

bool SqliteError::isLock() const {
    return (m_code & primaryCodeMask) == SQLITE_BUSY;
}

bool SqliteError::isAccess() const {
    switch (m_code) {
        case SQLITE_IOERR_SHMOPEN:  // the side file for readers, for which a full disk has no room
        case SQLITE_IOERR_SHMSIZE:
        case SQLITE_IOERR_SHMMAP:
            return true;
        default:
            break;
    }
    const int code = m_code & primaryCodeMask;
    return code == SQLITE_CANTOPEN || code == SQLITE_READONLY || code == SQLITE_FULL;
}

QString SqliteError::description() const {
    return u"%1 (%2)"_s.arg(QString::fromUtf8(sqlite3_errstr(m_code))).arg(m_code);
}

void SqliteDatabase::Closer::operator()(sqlite3* database) const {
    sqlite3_close(database);
}

void SqliteDatabase::Closer::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

std::unique_ptr<SqliteDatabase> SqliteDatabase::open(
    const QString& path, std::chrono::milliseconds patience) {
    const auto construct = [&](const QByteArray& name, int flags, Use use) {
        return std::unique_ptr<SqliteDatabase>(new SqliteDatabase(name, flags, patience, use));
    };
    const QByteArray name = QFile::encodeName(path);
    constexpr int writing = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    try {
        return construct(name, writing, Use::shared);
    } catch (const SqliteError& error) {
        if (!error.isAccess() || !QFile::exists(path))
            throw;
        // On a read-only or full disk SQLite cannot create its side files. It needs none with exclusive
        // locking, nor with `immutable=1`, which promises that nobody changes the file. An error of these
        // two attempts proves no damage, so the first error is thrown.
        try {
            return construct(name, writing, Use::makeshift);
        } catch (const SqliteError&) {
        }
        try {
            return construct(QUrl::fromLocalFile(path).toEncoded() + "?immutable=1",
                SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, Use::makeshift);
        } catch (const SqliteError&) {
        }
        throw;
    }
}

SqliteDatabase::SqliteDatabase(const QByteArray& name, int flags, std::chrono::milliseconds patience, Use use)
    : m_use(use) {
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(
        name.constData(), &handle, flags | SQLITE_OPEN_EXRESCODE | SQLITE_OPEN_NOMUTEX, nullptr);
    m_handle.reset(handle);
    check(code);
    setPatience(patience);

    const auto execute = [this](const char* sql) {
        return sqlite3_exec(m_handle.get(), sql, nullptr, nullptr, nullptr);
    };
    if (use == Use::makeshift)
        check(execute("PRAGMA locking_mode = EXCLUSIVE"));  // before anything else reads the file
    check(execute("PRAGMA cache_size = -64"));              // in KiB: no value is read twice
    checkIntegrity();
    // A write-ahead log needs memory that all users of the file share, which those on other hosts cannot, and
    // SQLite does not know that. A rollback journal is slower, and as safe only if every write waits for the
    // disk.
    const bool isShared = store_file::liesOnShared(sqlite3_db_filename(handle, "main"));
    bool hasLog = false;  // other file systems may support none either
    sqlite3_exec(
        handle, isShared ? "PRAGMA journal_mode = DELETE" : "PRAGMA journal_mode = WAL",
        [](void* found, int, char** mode, char**) {
            *static_cast<bool*>(found) = qstrcmp(mode[0], "wal") == 0;
            return SQLITE_OK;
        },
        &hasLog, nullptr);
    execute(hasLog ? "PRAGMA synchronous = NORMAL" : "PRAGMA synchronous = FULL");
    execute("PRAGMA journal_size_limit = 1048576");
    // a key that has moved to the keyring must not stay readable in the file
    execute("PRAGMA secure_delete = ON");
    check(
        execute("CREATE TABLE IF NOT EXISTS entries (key TEXT NOT NULL PRIMARY KEY, type TEXT NOT NULL, "
                "value NOT NULL)"));
    m_select = prepare("SELECT type, value FROM entries WHERE key = ?1");
    m_upsert = prepare(
        "INSERT INTO entries (key, type, value) VALUES (?1, ?2, ?3) "
        "ON CONFLICT (key) DO UPDATE SET type = ?2, value = ?3");
}

std::optional<StoredValue> SqliteDatabase::read(const QString& key) {
    const QByteArray name = key.toUtf8();
    Execution select(m_select.get());
    select.bindText(1, name);
    if (!select.step())
        return std::nullopt;
    const QByteArray type = select.column(0);
    if (type == "text")
        return textOf(select.column(1));
    if (type == "boolean")
        return select.integerColumn(1) != 0;
    if (type == "integer")
        return select.integerColumn(1);
    if (type == "binary")
        return select.column(1);
    throw SqliteError(SQLITE_MISMATCH);
}

void SqliteDatabase::write(const QString& key, const StoredValue& value) {
    const QByteArray name = key.toUtf8();
    const auto* text = std::get_if<QString>(&value);
    const QByteArray utf8 = text ? text->toUtf8() : QByteArray();

    Execution upsert(m_upsert.get());
    upsert.bindText(1, name);
    upsert.bindText(2, typeNames.at(value.index()));
    if (text)
        upsert.bindText(3, utf8);
    else if (const auto* bytes = std::get_if<QByteArray>(&value))
        upsert.bindBinary(3, *bytes);
    else if (const auto* number = std::get_if<qint64>(&value))
        upsert.bindInteger(3, *number);
    else
        upsert.bindInteger(3, std::get<bool>(value) ? 1 : 0);
    static_cast<void>(upsert.step());
}

void SqliteDatabase::setAside(const QString& key) {
    const Statement statement = prepare(
        "WITH RECURSIVE number(n) AS (VALUES(1) UNION ALL SELECT n + 1 FROM number "
        "WHERE EXISTS (SELECT 1 FROM entries WHERE key = ?1 || '.damaged-' || n)) "
        "UPDATE entries SET key = ?1 || '.damaged-' || (SELECT max(n) FROM number) WHERE key = ?1");
    const QByteArray name = key.toUtf8();
    Execution update(statement.get());
    update.bindText(1, name);
    static_cast<void>(update.step());
}

void SqliteDatabase::emptyLog() {
    sqlite3_wal_checkpoint_v2(m_handle.get(), nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
}

bool SqliteDatabase::takesWrites() const {
    return m_use == Use::shared && sqlite3_db_readonly(m_handle.get(), "main") == 0 && !hasMoved();
}

void SqliteDatabase::setPatience(std::chrono::milliseconds patience) {
    sqlite3_busy_timeout(m_handle.get(), static_cast<int>(patience.count()));
}

SqliteDatabase::Statement SqliteDatabase::prepare(const char* sql) const {
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v3(m_handle.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr));
    return Statement(statement);
}

void SqliteDatabase::check(int code) const {
    throwUnless(SQLITE_OK, code);
}

void SqliteDatabase::checkIntegrity() const {
    // PRAGMA quick_check does not check the index by which values are found: a value that is missing there
    // would read as never stored.
    const Statement statement = prepare("PRAGMA integrity_check(1)");
    Execution check(statement.get());
    if (!check.step() || check.column(0) != "ok")
        throw SqliteError(SQLITE_CORRUPT);
}

bool SqliteDatabase::hasMoved() const {
    int moved = 0;
    sqlite3_file_control(m_handle.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return moved != 0;
}

}  // namespace tralio
