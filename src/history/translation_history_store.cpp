#include "history/translation_history_store.h"

#include <algorithm>
#include <utility>

#include "history/translation_history_json.h"
#include "state/key_value_store.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

const QString key = u"app_translation_history_items"_s;
constexpr qsizetype maxItems = 50;

/// Texts are compared in normalised form: one typed with combining marks equals one typed without.
bool isSameText(const QString& one, const QString& other) {
    return one == other ||
        one.normalized(QString::NormalizationForm_C) == other.normalized(QString::NormalizationForm_C);
}

bool isOfSameText(const TranslationItem& one, const TranslationItem& other) {
    return isSameText(one.sourceLang, other.sourceLang) && isSameText(one.targetLang, other.targetLang) &&
        isSameText(one.sourceText, other.sourceText);
}

}  // namespace

TranslationHistoryStore::TranslationHistoryStore(KeyValueStore& store, Now now)
    : m_store(store), m_now(std::move(now)) {
    load();
}

TranslationHistoryStore::~TranslationHistoryStore() {
    if (!m_isLoaded && !m_items().isEmpty())
        save();
}

void TranslationHistoryStore::add(const QString& sourceText, const QString& translatedText,
    const QString& sourceLang, const QString& targetLang, const QString& tone) {
    const TranslationItem added{.id = QUuid::createUuid(),
        .sourceText = wellFormed(sourceText.trimmed()),
        .translatedText = wellFormed(translatedText.trimmed()),
        .sourceLang = wellFormed(sourceLang),
        .targetLang = wellFormed(targetLang),
        .tone = wellFormed(tone),
        .timestamp = timestampOf(m_now())};
    if (added.sourceText.isEmpty() || added.translatedText.isEmpty())
        return;

    load();
    QList<TranslationItem> items = m_items();
    items.removeIf([&added](const TranslationItem& item) { return isOfSameText(item, added); });
    items.prepend(added);
    if (items.size() > maxItems)
        items.resize(maxItems);
    m_items = std::move(items);
    save();
}

void TranslationHistoryStore::remove(const QSet<qsizetype>& at) {
    QSet<QUuid> ids;
    for (qsizetype position = 0; position < m_items().size(); ++position)
        if (at.contains(position))
            ids.insert(m_items()[position].id);
    removeAll(ids);
}

void TranslationHistoryStore::remove(const QUuid& id) {
    removeAll({id});
}

void TranslationHistoryStore::removeAll(const QSet<QUuid>& ids) {
    load();
    QList<TranslationItem> kept = m_items();
    kept.removeIf([&ids](const TranslationItem& item) { return ids.contains(item.id); });
    m_items = std::move(kept);
    saveRemoval();
}

void TranslationHistoryStore::clear() {
    m_isLoaded = true;  // what could not be read goes as well
    m_items = QList<TranslationItem>();
    saveRemoval();
}

void TranslationHistoryStore::bringBack(const QList<TranslationItem>& before) {
    if (m_isLoaded)
        load();
    const auto wasThere = [&before](const TranslationItem& item) {
        return std::ranges::find(before, item.id, &TranslationItem::id) != before.end();
    };
    QList<TranslationItem> items = m_items();
    items.removeIf(wasThere);
    const QList<TranslationItem> added = items;
    for (const TranslationItem& item : before)
        if (std::ranges::none_of(
                added, [&item](const TranslationItem& other) { return isOfSameText(item, other); }))
            items.append(item);
    const qsizetype most = added.isEmpty() ? std::max(maxItems, before.size()) : maxItems;
    if (items.size() > most)
        items.resize(most);
    m_items = std::move(items);
    save();
}

void TranslationHistoryStore::save() {
    if (!m_isLoaded)
        load();
    if (!m_isLoaded)
        return;
    const QByteArray data = encodeHistory(m_items());
    m_stored = qHash(data);
    m_store.setValue(key, data);
}

void TranslationHistoryStore::saveRemoval() {
    save();
    m_store.forgetOverwritten();
}

void TranslationHistoryStore::load() {
    const Reading stored = m_store.read(key);
    if (stored.isPutOff)
        return;
    const auto* data = stored.value ? std::get_if<QByteArray>(&*stored.value) : nullptr;
    const size_t hash = data ? qHash(*data) : 0;
    if (m_isLoaded && (!data || hash == m_stored))
        return;
    const bool isFirst = !std::exchange(m_isLoaded, true);
    m_stored = hash;
    auto items = data ? decodeHistory(*data) : std::nullopt;
    if (!items)
        m_store.preserve(key);
    if (isFirst && !m_items().isEmpty())
        bringBack(items.value_or(QList<TranslationItem>()));
    else if (items)
        m_items = *std::move(items);
}

}  // namespace tralio
