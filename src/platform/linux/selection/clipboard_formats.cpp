#include "platform/linux/selection/clipboard_formats.h"

#include <QStringDecoder>

#include "common/text_limit.h"

namespace tralio {

QString decodeText(const QByteArray& bytes, TextFormat::Encoding encoding) {
    const bool isWhole = bytes.size() <= longestTextBytes;
    // Stateless: a text that ends within a character is not UTF-8, unless reading was cut off there.
    QStringDecoder decoder(QStringDecoder::Utf8,
        QStringDecoder::Flag::ConvertInitialBom |
            (isWhole ? QStringDecoder::Flag::Stateless : QStringDecoder::Flag::Default));
    QString text = decoder.decode(bytes);
    if (encoding == TextFormat::Encoding::eightBit && decoder.hasError())
        text = QString::fromLatin1(bytes);
    return isWhole ? text : beginningOfLongText(text);
}

}  // namespace tralio
