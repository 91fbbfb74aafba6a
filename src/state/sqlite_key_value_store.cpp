#include "state/sqlite_key_value_store.h"

#include <QFileInfo>
#include <QStandardPaths>

#include <chrono>
#include <utility>
#include <vector>

#include "common/debug_log.h"
#include "state/sqlite_database.h"
#include "state/store_file.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// True while the user has not acknowledged that a damaged file was set aside.
const QString damageKey = u"app_store_was_damaged"_s;

/// How long to wait for a lock. After one failure there is no waiting until a write succeeds, since settings
/// are written at every key press.
std::chrono::milliseconds patience(bool failing) {
    return failing ? 0ms : 200ms;
}

}  // namespace

QString defaultStorePath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/tralio/tralio.sqlite"_s;
}

SqliteKeyValueStore::SqliteKeyValueStore(QString path) : m_path(std::move(path)) {
    const bool isFirst = store_file::isAbsent(m_path);
    try {
        open();
    } catch (const SqliteError& error) {
        fail(u"open", error);
        setTrouble(isFirst ? StoreTrouble::unsaved : StoreTrouble::unreadable);
        return;
    }
    if (boolean(damageKey).value_or(false))
        setTrouble(StoreTrouble::unreadable);
    else if (!m_database->takesWrites())
        setTrouble(StoreTrouble::unsaved);
}

SqliteKeyValueStore::~SqliteKeyValueStore() {
    writeAllUnsaved();
}

std::optional<StoredValue> SqliteKeyValueStore::find(const QString& key) const {
    if (const auto unsaved = m_unsaved.find(key); unsaved != m_unsaved.end())
        return unsaved->second;
    if (!m_database)
        return known(key);
    auto value = m_database->read(key);
    m_unreadable.erase(key);
    if (value)
        remember(key, *value);
    else
        m_known.insert_or_assign(key, std::nullopt);
    return value;
}

Reading SqliteKeyValueStore::read(const QString& key) {
    try {
        if (!m_database && !m_unsaved.contains(key))
            open();
        return {find(key)};
    } catch (const SqliteError& error) {
        if (m_database && !error.isLock())
            return {value(key)};  // tells of the trouble
        return {known(key), !m_known.contains(key) && !store_file::isAbsent(m_path)};
    }
}

std::optional<StoredValue> SqliteKeyValueStore::value(const QString& key) const {
    try {
        return find(key);
    } catch (const SqliteError& error) {
        if (error.isLock() && m_known.contains(key))
            return known(key);
        if (error.isForeignValue())
            m_preserved.insert(key);
        if (m_unreadable.empty())
            debugLog(u"SqliteKeyValueStore.value: cannot read: "_s + error.description());
        if (m_unreadable.insert(key).second)
            setTrouble(StoreTrouble::unreadable);
        return error.isForeignValue() ? std::nullopt : known(key);
    }
}

std::optional<StoredValue> SqliteKeyValueStore::known(const QString& key) const {
    const auto found = m_known.find(key);
    return found == m_known.end() ? std::nullopt : found->second;
}

// If the file was open before, its values are known from memory; only large values that were not kept are
// lost.
bool SqliteKeyValueStore::bringBackKnown() {
    for (const auto& [key, value] : m_known)
        if (value && key != damageKey)
            m_unsaved.emplace(key, *value);
    return !m_isLargeUnknown;
}

void SqliteKeyValueStore::remember(const QString& key, const StoredValue& value) const {
    constexpr qsizetype large = 256 * 1024;
    const auto* text = std::get_if<QString>(&value);
    const auto* bytes = std::get_if<QByteArray>(&value);
    const bool isLarge = (text && text->size() > large / 2) || (bytes && bytes->size() > large);
    m_isLargeUnknown |= isLarge;
    if (isLarge)
        m_known.erase(key);
    else
        m_known.insert_or_assign(key, value);
}

void SqliteKeyValueStore::setValue(const QString& key, StoredValue value) {
    m_unsaved.insert_or_assign(key, std::move(value));
    // Write this value before those kept from earlier: one that is too large for a full disk must not hold it
    // up.
    if (writeUnsaved(key))
        writeAllUnsaved();
    if (!m_unsaved.empty())
        return;
    if (std::exchange(m_failing, false))
        debugLog(u"SqliteKeyValueStore.setValue: all values are written again"_s);
    m_unsavedIsAcknowledged = false;
    if (m_trouble == StoreTrouble::unsaved)
        setTrouble(std::nullopt);
}

void SqliteKeyValueStore::forgetOverwritten() {
    if (m_database)
        m_database->emptyLog();
}

void SqliteKeyValueStore::acknowledgeTrouble() {
    m_unsavedIsAcknowledged |= m_trouble == StoreTrouble::unsaved;
    setTrouble(std::nullopt);
    if (boolean(damageKey).value_or(false))
        setValue(damageKey, false);
}

void SqliteKeyValueStore::setTrouble(std::optional<StoreTrouble> trouble) const {
    if (m_trouble == trouble)
        return;
    m_trouble = trouble;
    if (onTrouble)
        onTrouble(trouble);
}

void SqliteKeyValueStore::open() {
    // The file must not be open when it is renamed.
    m_wasOpen |= std::exchange(m_database, nullptr) != nullptr;
    if (m_wasOpen && !QFileInfo::exists(m_path))
        m_isLossUntold |= !bringBackKnown();
    store_file::createPrivately(m_path);
    try {
        m_database = SqliteDatabase::open(m_path, patience(m_failing));
    } catch (const SqliteError& error) {
        const auto aside = error.isDamage() ? store_file::setAside(m_path) : std::nullopt;
        if (!aside)
            throw;
        debugLog(u"SqliteKeyValueStore.open: the store is damaged and was set aside as %1: %2"_s.arg(
            *aside, error.description()));
        m_isLossUntold |= !m_wasOpen || !bringBackKnown();
        store_file::createPrivately(m_path);
        m_database = SqliteDatabase::open(m_path, patience(m_failing));
    }
    if (!m_isLossUntold)
        return;
    setTrouble(StoreTrouble::unreadable);
    m_isLossUntold = false;
    m_unsaved.erase(damageKey);
    m_unsaved.emplace(damageKey, true);  // kept as unsaved until the write has succeeded
    m_database->write(damageKey, true);
    m_unsaved.erase(damageKey);
}

bool SqliteKeyValueStore::writeUnsaved(const QString& key) {
    const auto entry = m_unsaved.find(key);
    if (entry == m_unsaved.end())
        return true;  // already written together with another value
    const StoredValue value = entry->second;
    try {
        if (!m_database || !m_database->takesWrites())
            open();
        m_database->setPatience(patience(m_failing));
        try {
            if (m_preserved.contains(key))
                m_database->setAside(key);
            m_preserved.erase(key);
            m_database->write(key, value);
        } catch (const SqliteError& error) {
            if (!error.isDamage())
                throw;
            open();  // detects the damage and begins a new file
            m_database->write(key, value);
        }
    } catch (const SqliteError& error) {
        fail(u"setValue", error);
        return false;
    }
    remember(key, value);
    m_unsaved.erase(key);
    return true;
}

void SqliteKeyValueStore::writeAllUnsaved() {
    // Several rounds: if the file turns out to be damaged, its known values are added to the unsaved ones.
    constexpr int mostRounds = 3;  // on a disk that damages every file this would not end
    bool isProgress = true;
    for (int round = 0; round < mostRounds && isProgress && !m_unsaved.empty(); ++round) {
        std::vector<QString> keys;
        for (const auto& [key, value] : m_unsaved)
            keys.push_back(key);
        isProgress = false;
        for (const QString& key : keys)
            isProgress |= writeUnsaved(key);
    }
}

void SqliteKeyValueStore::fail(QStringView operation, const SqliteError& error) {
    if (!std::exchange(m_failing, true))
        debugLog(
            u"SqliteKeyValueStore.%1: values are kept in memory: %2"_s.arg(operation, error.description()));
    if (!m_trouble && !m_unsavedIsAcknowledged)
        setTrouble(StoreTrouble::unsaved);
}

}  // namespace tralio
