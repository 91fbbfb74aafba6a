#include "platform/linux/selection/clipboard_formats.h"

#include <QStringDecoder>

namespace tralio {

QString decodeText(const QByteArray& bytes, TextFormat::Encoding encoding) {
    // Stateless: a text that ends within a letter is no UTF-8.
    QStringDecoder decoder(
        QStringDecoder::Utf8, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    if (encoding == TextFormat::Encoding::eightBit && decoder.hasError())
        return QString::fromLatin1(bytes);
    return text;
}

QImage decodePicture(const QByteArray& bytes, const PictureFormat& format) {
    return QImage::fromData(bytes, format.decoder);
}

}  // namespace tralio
