#pragma once

#include <sqlite3.h>
#include <sys/stat.h>

#include "state/sqlite_key_value_store.h"
#include "support/debug_log_file.h"
#include "support/process_limits.h"

namespace tralio {

/// A folder for one store, a debug log of its own, and an ordinary user's rights.
struct SqliteStoreTest : testing::Test {
    [[nodiscard]] QString path(const QString& name = QStringLiteral("tralio/tralio.sqlite")) const {
        return m_folder.filePath(name);
    }

    [[nodiscard]] static mode_t mode(const QString& path) {
        struct stat status {};
        return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 0777U : 0;
    }
    static void setMode(const QString& path, mode_t mode) {
        ASSERT_EQ(chmod(QFile::encodeName(path).constData(), mode), 0);
    }

    /// What another start of the program would read.
    [[nodiscard]] std::optional<StoredValue> reread(const QString& key) const {
        return SqliteKeyValueStore(path()).value(key);
    }

    // A folder can be removed only by who may write into it.
    void TearDown() override { chmod(QFile::encodeName(path(QStringLiteral("tralio"))).constData(), 0700); }

    const OrdinaryUser m_user;
    const QTemporaryDir m_folder;
    const DebugLogFile m_log;
};

/// A connection beside the store's own, as another process would have it.
struct OtherConnection final {
    explicit OtherConnection(const QString& path) {
        sqlite3* handle = nullptr;
        sqlite3_open(QFile::encodeName(path).constData(), &handle);
        m_handle.reset(handle);
    }

    /// The first column of the first row, or SQLite's text for what went wrong.
    [[nodiscard]] QByteArray query(const char* sql) const {
        QByteArray result;
        const auto take = [](void* context, int, char** columns, char**) {
            *static_cast<QByteArray*>(context) = columns[0];
            return 1;
        };
        const int code = sqlite3_exec(m_handle.get(), sql, take, &result, nullptr);
        return code == SQLITE_OK || code == SQLITE_ABORT ? result : QByteArray(sqlite3_errstr(code));
    }

private:
    struct Closer {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };
    std::unique_ptr<sqlite3, Closer> m_handle;
};

}  // namespace tralio
