#include "programs/recogniser/pixels/image_decoder.h"

#include <QImageReader>
#include <QPainter>

#include <utility>

#include "platform/linux/helpers/recogniser_protocol.h"
#include "programs/recogniser/pixels/memory_allowance.h"

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
    // Dots per metre, from just below 144 per inch to what is no screen's any more, but a printer's.
    constexpr int dense = 5600;
    constexpr int printed = 9000;
    return image.dotsPerMeterX() >= dense && image.dotsPerMeterX() < printed ? 2 : 1;
}

/// What there is to see of a picture with an alpha channel.
struct Visible {
    bool isLight;
    bool isAnything;
};

Visible visibleOf(const QImage& image) {
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
    return {luminance > opacity * 128, opacity > 0};
}

bool hasHoles(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(row[x]) != 255)
                return true;
    }
    return false;
}

/// Where it can be, in the memory of the image that is given: it may be large.
QImage opaque(QImage image) {
    if (image.hasAlphaChannel()) {
        image.convertTo(QImage::Format_ARGB32);
        const Visible visible = visibleOf(image);
        // One that nobody has filled, as in some bitmaps, hides nothing.
        if (visible.isAnything && hasHoles(image)) {
            const double ratio = image.devicePixelRatio();
            image.setDevicePixelRatio(1);
            QImage result(image.size(), QImage::Format_RGB32);
            result.fill(visible.isLight ? Qt::black : Qt::white);
            QPainter(&result).drawImage(0, 0, image);
            result.setDevicePixelRatio(ratio);
            return result;
        }
    }
    if (image.hasAlphaChannel())
        image.reinterpretAsFormat(QImage::Format_RGB32);
    image.convertTo(QImage::Format_RGB32);
    return image;
}

/// For the decoder itself, and all that stands in a file beside the pixels.
constexpr qint64 memoryBesidePixels = 128 << 20;
/// The deepest pixels and those that they become, or a progressive file's coefficients and its pixels.
constexpr qint64 memoryPerPixel = 12;

}  // namespace

DecodedImage decodeImage(const QString& file) {
    QImageReader reader(file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    QSize size;
    {
        const MemoryAllowance allowance(memoryBesidePixels);
        size = reader.size();
    }
    if (isOversized(size))
        return OversizedImage{size};
    const qint64 pixels =
        size.isValid() ? qint64(size.width()) * size.height() : recogniser_protocol::maximumPixels;
    const MemoryAllowance allowance(memoryBesidePixels + memoryPerPixel * pixels);
    QImage image = reader.read();
    if (image.isNull())
        return UndecodableImage{};
    if (isOversized(image.size()))
        return OversizedImage{image.size()};
    image.setDevicePixelRatio(devicePixelRatioOf(image));
    return opaque(std::move(image));
}

}  // namespace tralio
