#include "programs/recogniser/image_decoder.h"

#include <QImageReader>
#include <QPainter>

#include "platform/linux/helpers/recogniser_protocol.h"

namespace tralio {
namespace {

bool isOversized(QSize size) {
    return qint64(size.width()) * size.height() > recogniser_protocol::maximumPixels;
}

/// What the file tells of its screen: a text of its own, or a resolution that only dense screens have.
double devicePixelRatioOf(const QImage& image) {
    const double told = image.text(devicePixelRatioKey.toString()).toDouble();
    if (told >= 1 && told <= 4)
        return told;
    constexpr int dense = 5600;  // dots per metre, just below 144 per inch
    return image.dotsPerMeterX() >= dense ? 2 : 1;
}

bool isLight(const QImage& image) {
    quint64 luminance = 0;
    quint64 opacity = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const auto alpha = static_cast<quint64>(qAlpha(row[x]));
            luminance += alpha * static_cast<quint64>(qGray(row[x]));
            opacity += alpha;
        }
    }
    return luminance > opacity * 128;
}

QImage opaque(const QImage& image) {
    if (!image.hasAlphaChannel())
        return image.convertToFormat(QImage::Format_RGB32);
    const QImage source = image.convertToFormat(QImage::Format_ARGB32);
    QImage result(source.size(), QImage::Format_RGB32);
    const bool hasHoles = [&source] {
        for (int y = 0; y < source.height(); ++y) {
            const auto* row = reinterpret_cast<const QRgb*>(source.constScanLine(y));
            for (int x = 0; x < source.width(); ++x)
                if (qAlpha(row[x]) != 255)
                    return true;
        }
        return false;
    }();
    if (!hasHoles) {
        result = source.convertToFormat(QImage::Format_RGB32);
    } else {
        result.fill(isLight(source) ? Qt::black : Qt::white);
        QImage flat = source;
        flat.setDevicePixelRatio(1);
        QPainter(&result).drawImage(0, 0, flat);
    }
    result.setDevicePixelRatio(image.devicePixelRatio());
    return result;
}

}  // namespace

DecodedImage decodeImage(const ImageSource& source) {
    if (const auto* bitmap = std::get_if<QImage>(&source))
        return opaque(*bitmap);
    QImageReader reader(std::get<QUrl>(source).toLocalFile());
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (isOversized(reader.size()))
        return OversizedImage{reader.size()};
    QImage image = reader.read();
    if (image.isNull())
        return UndecodableImage{};
    if (isOversized(image.size()))
        return OversizedImage{image.size()};
    image.setDevicePixelRatio(devicePixelRatioOf(image));
    return opaque(image);
}

}  // namespace tralio
