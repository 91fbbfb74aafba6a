#pragma once

#include <QList>
#include <QSet>

#include <chrono>
#include <functional>

#include "common/observable_object.h"
#include "history/translation_item.h"

namespace tralio {

class KeyValueStore;

/// The past translations, newest first: at most 50, and one for each source text and pair of languages. Read
/// from the key-value store at construction, unless it is locked, and before a change, since another copy of
/// the program may share it; written back completely at every change. Used from the main thread.
///
/// Never fails: stored data that cannot be decoded gives an empty history, and is set aside by the next
/// change.
class TranslationHistoryStore final : public ObservableObject {
    Q_OBJECT

public:
    using Now = std::function<std::chrono::system_clock::time_point()>;

    /// `store` outlives the history.
    explicit TranslationHistoryStore(KeyValueStore& store, Now now = std::chrono::system_clock::now);
    /// Tries once more to store what has been added while the store was locked.
    ~TranslationHistoryStore() override;

    [[nodiscard]] const QList<TranslationItem>& items() const { return m_items(); }

    /// Adds a translation as the newest entry, in place of an earlier one of the same source text and
    /// languages. Both texts are trimmed; if one is empty then, nothing happens.
    void add(const QString& sourceText, const QString& translatedText, const QString& sourceLang,
        const QString& targetLang, const QString& tone);
    /// Positions outside of `items` are ignored.
    void remove(const QSet<qsizetype>& at);
    void remove(const QUuid& id);
    void clear();
    /// Restores all entries that were there before a removal, below those that have been added since. An
    /// entry is left out if its text has been translated between the same languages since.
    void bringBack(const QList<TranslationItem>& before);

    /// Reads what is stored, unless it is what was read or written last. What was added before that was
    /// possible stays above it.
    void load();

private:
    void removeAll(const QSet<QUuid>& ids);
    void save();
    void saveRemoval();

    KeyValueStore& m_store;
    Now m_now;
    Observable<QList<TranslationItem>> m_items{*this};
    bool m_isLoaded = false;  ///< until then nothing is written
    size_t m_stored = 0;      ///< the hash of what was read or written last
};

}  // namespace tralio
