#include "history/translation_history_json.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

constexpr auto idKey = "id"_L1;
constexpr auto timestampKey = "timestamp"_L1;
constexpr std::pair<QLatin1StringView, QString TranslationItem::*> textKeys[] = {
    {"sourceText"_L1, &TranslationItem::sourceText},
    {"translatedText"_L1, &TranslationItem::translatedText},
    {"sourceLang"_L1, &TranslationItem::sourceLang},
    {"targetLang"_L1, &TranslationItem::targetLang},
    {"tone"_L1, &TranslationItem::tone},
};

QString canonicalForm(const QUuid& id) {
    return id.toString(QUuid::WithoutBraces).toUpper();
}

QJsonObject encode(const TranslationItem& item) {
    QJsonObject object{{idKey, canonicalForm(item.id)}, {timestampKey, item.timestamp}};
    for (const auto& [key, member] : textKeys)
        object.insert(key, item.*member);
    return object;
}

std::optional<TranslationItem> decode(const QJsonObject& object) {
    TranslationItem item;
    const QString id = object[idKey].toString();
    item.id = QUuid::fromString(id);
    // Qt also accepts ids in braces, and reads anything else as the null id.
    if (canonicalForm(item.id) != id.toUpper())
        return std::nullopt;
    if (!object[timestampKey].isDouble())
        return std::nullopt;
    item.timestamp = object[timestampKey].toDouble();
    for (const auto& [key, member] : textKeys) {
        const QJsonValue value = object[key];
        if (!value.isString())
            return std::nullopt;
        item.*member = wellFormed(value.toString());
    }
    return item;
}

}  // namespace

QByteArray encodeHistory(const QList<TranslationItem>& items) {
    QJsonArray array;
    for (const TranslationItem& item : items)
        array.append(encode(item));
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<QList<TranslationItem>> decodeHistory(const QByteArray& data) {
    const QJsonDocument document = QJsonDocument::fromJson(data);
    if (!document.isArray())
        return std::nullopt;
    QList<TranslationItem> items;
    for (const QJsonValue element : document.array()) {
        auto item = decode(element.toObject());
        if (!item)
            return std::nullopt;
        items.append(*std::move(item));
    }
    return items;
}

QString wellFormed(QString text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text.at(i).isSurrogate())
            continue;
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

}  // namespace tralio
