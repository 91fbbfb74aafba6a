#include "programs/snip/marks.h"

#include <QPainter>
#include <QRadialGradient>

#include <algorithm>
#include <cmath>

namespace tralio {
namespace {

constexpr QColor light(255, 255, 255);
constexpr QColor outline(10, 12, 16, 150);
constexpr QColor glow(0x61, 0xB0, 0xFF);

QImage transparent(int side) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

int pixels(double logical, double scale) {
    return std::max(1, int(std::lround(logical * scale)));
}

}  // namespace

QImage drawCross(double scale) {
    const int line = pixels(1, scale);
    const int arm = pixels(10, scale);
    const int gap = pixels(3, scale);  // leaves the pixel under the pointer uncovered
    const int middle = gap + arm + line;
    QImage image = transparent(2 * middle + 1);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    const int far = middle + gap;
    // A dark outline around a light line shows on any background.
    for (const auto& [color, margin] : {std::pair(outline, line), std::pair(light, 0)}) {
        const int start = middle - line / 2 - margin;
        const int breadth = line + 2 * margin;
        const int length = arm + margin;
        painter.fillRect(start, line - margin, breadth, length, color);
        painter.fillRect(start, far, breadth, length, color);
        painter.fillRect(line - margin, start, length, breadth, color);
        painter.fillRect(far, start, length, breadth, color);
    }
    return image;
}

QImage drawHandle(double scale) {
    const int side = 2 * pixels(9, scale) + 1;
    QImage image = transparent(side);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QPointF middle(side / 2.0, side / 2.0);

    QRadialGradient halo(middle, side / 2.0);
    for (const auto& [place, opacity] : {std::pair(0.0, 0.75), std::pair(0.45, 0.5), std::pair(1.0, 0.0)}) {
        QColor color = glow;
        color.setAlphaF(float(opacity));
        halo.setColorAt(place, color);
    }
    painter.setBrush(halo);
    painter.drawEllipse(middle, side / 2.0, side / 2.0);
    painter.setBrush(light);
    painter.drawEllipse(middle, 3.5 * scale, 3.5 * scale);
    return image;
}

}  // namespace tralio
