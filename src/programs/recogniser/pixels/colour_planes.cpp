#include "programs/recogniser/pixels/colour_planes.h"

#include <QRect>

#include <algorithm>

namespace tralio {

Channels channelsOf(const QImage& image) {
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    Channels channels;
    channels.fill(Plane(rgb.width(), rgb.height()));
    for (int y = 0; y < rgb.height(); ++y) {
        const auto* pixels = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
        for (int x = 0; x < rgb.width(); ++x) {
            channels[0].row(y)[x] = static_cast<quint8>(qRed(pixels[x]));
            channels[1].row(y)[x] = static_cast<quint8>(qGreen(pixels[x]));
            channels[2].row(y)[x] = static_cast<quint8>(qBlue(pixels[x]));
        }
    }
    return channels;
}

Plane cut(const Plane& plane, const QRect& part) {
    Plane result(part.width(), part.height());
    for (int y = 0; y < part.height(); ++y)
        std::copy_n(plane.row(part.top() + y) + part.left(), part.width(), result.row(y));
    return result;
}

Channels cut(const Channels& channels, const QRect& part) {
    return {cut(channels[0], part), cut(channels[1], part), cut(channels[2], part)};
}

}  // namespace tralio
