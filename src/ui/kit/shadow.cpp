#include "ui/kit/shadow.h"

#include <QPixmap>
#include <qdrawutil.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "ui/kit/painting.h"
#include "ui/kit/theme.h"

namespace tralio {
namespace {

/// How far the shadow extends beyond its box, and the corner of the box into the shadow.
int reachOf(const Shadow& shadow) {
    return shadow.blur + 2;
}

/// A moving average over 2 * `half` + 1 values; three in a row approximate a Gaussian blur.
void mean(std::vector<float>& values, std::vector<float>& scratch, int half) {
    const int count = int(values.size());
    scratch.resize(values.size());
    float sum = 0;
    const auto at = [&](int i) { return i >= 0 && i < count ? values[std::size_t(i)] : 0.0F; };
    for (int i = -half; i < half; ++i)
        sum += at(i);
    for (int i = 0; i < count; ++i) {
        sum += at(i + half);
        scratch[std::size_t(i)] = sum / float(2 * half + 1);
        sum -= at(i - half);
    }
    values.swap(scratch);
}

void blurLines(std::vector<float>& image, int side, int half, bool columns) {
    std::vector<float> line(static_cast<std::size_t>(side));
    std::vector<float> scratch;
    const auto index = [&](int across, int along) {
        return std::size_t(columns ? along * side + across : across * side + along);
    };
    for (int across = 0; across < side; ++across) {
        for (int along = 0; along < side; ++along)
            line[std::size_t(along)] = image[index(across, along)];
        for (int pass = 0; pass < 3; ++pass)
            mean(line, scratch, half);
        for (int along = 0; along < side; ++along)
            image[index(across, along)] = line[std::size_t(along)];
    }
}

QPixmap blurred(int radius, const Shadow& shadow) {
    const int reach = reachOf(shadow);
    const int corner = radius + reach;
    const int side = 2 * (reach + corner) + 1;
    QImage shape(side, side, QImage::Format_ARGB32_Premultiplied);
    shape.fill(Qt::transparent);
    {
        QPainter painter(&shape);
        paintFill(painter, QRectF(reach, reach, side - 2 * reach, side - 2 * reach), radius, Qt::black);
    }
    std::vector<float> alpha(static_cast<std::size_t>(side) * std::size_t(side));
    for (int y = 0; y < side; ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(shape.constScanLine(y));
        for (int x = 0; x < side; ++x)
            alpha[std::size_t(y * side + x)] = float(qAlpha(line[x]));
    }
    // Three averages over a width of `blur` have a standard deviation of half of it, as the soft edge is
    // defined.
    const int half = std::max(1, shadow.blur / 2);
    blurLines(alpha, side, half, false);
    blurLines(alpha, side, half, true);

    const QColor ink = color(shadow.color);
    for (int y = 0; y < side; ++y) {
        auto* line = reinterpret_cast<QRgb*>(shape.scanLine(y));
        for (int x = 0; x < side; ++x) {
            const float share = alpha[std::size_t(y * side + x)] / 255 * ink.alphaF();
            line[x] = qPremultiply(qRgba(ink.red(), ink.green(), ink.blue(), int(std::lround(share * 255))));
        }
    }
    return QPixmap::fromImage(shape);
}

/// Caches the shadows of the window and of menus, for one scheme at a time.
const QPixmap& tileFor(int radius, const Shadow& shadow) {
    struct Entry {
        int radius = -1;
        Shadow shadow{};
        QRgb ink = 0;
        QPixmap tile;
    };
    static std::array<Entry, 3> entries;
    static std::size_t next = 0;
    const QRgb ink = color(shadow.color).rgba();
    for (const Entry& entry : entries)
        if (entry.radius == radius && entry.shadow == shadow && entry.ink == ink)
            return entry.tile;
    Entry& entry = entries[next];
    next = (next + 1) % entries.size();
    entry = {radius, shadow, ink, blurred(radius, shadow)};
    return entry.tile;
}

}  // namespace

void paintShadow(QPainter& painter, const QRect& box, int radius, const Shadow& shadow) {
    const int reach = reachOf(shadow);
    const int corner = reach + radius + reach;
    const QMargins margins(corner, corner, corner, corner);
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRect target = box.adjusted(-reach, -reach, reach, reach).translated(0, shadow.offset);
    const QPixmap& tile = tileFor(radius, shadow);
    if (target.width() < 2 * corner || target.height() < 2 * corner)
        painter.drawPixmap(target, tile);  // too small for the corners at full size
    else
        qDrawBorderPixmap(&painter, target, margins, tile, tile.rect(), margins);
    painter.restore();
}

}  // namespace tralio
