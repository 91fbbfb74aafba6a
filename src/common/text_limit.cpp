#include "common/text_limit.h"

#include <QLocale>

#include <algorithm>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

qsizetype codePointCount(QStringView text) {
    const auto isSecondHalf = [&](qsizetype at) {
        return at > 0 && text.at(at).isLowSurrogate() && text.at(at - 1).isHighSurrogate();
    };
    qsizetype count = 0;
    for (qsizetype at = 0; at < text.size(); ++at)
        if (!isSecondHalf(at))
            ++count;
    return count;
}

QString messageAbout(const QString& kind, QStringView text) {
    static const QLocale vietnamese(QLocale::Vietnamese, QLocale::Vietnam);
    const qsizetype count = codePointCount(text);
    // If only the beginning was read, the real length is unknown.
    const QString length =
        count == longestText + 1 ? u"hơn "_s + vietnamese.toString(longestText) : vietnamese.toString(count);
    return u"%1 quá dài (%2 ký tự, tối đa %3)"_s.arg(kind, length, vietnamese.toString(longestText));
}

}  // namespace

bool isTooLong(QStringView text) {
    return text.size() > longestText && codePointCount(text) > longestText;
}

QString tooLongMessage(QStringView text) {
    return messageAbout(u"Văn bản"_s, text);
}

QString tooLongTranslationMessage(QStringView translation) {
    return messageAbout(u"Bản dịch"_s, translation);
}

QString beginningOfLongText(QStringView beginning) {
    qsizetype size = std::min(beginning.size(), longestText);
    if (size > 0 && beginning.at(size - 1).isHighSurrogate())
        --size;
    // Padded to the full length: trimming may have removed much, and the rest is unknown.
    QString text = beginning.first(size).trimmed().toString();
    const qsizetype missing = longestText + 1 - codePointCount(text);
    return text + QString(missing, u'…');
}

}  // namespace tralio
