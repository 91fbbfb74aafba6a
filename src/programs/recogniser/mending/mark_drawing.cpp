#include "programs/recogniser/mending/mark_drawing.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace tralio {

Drawing drawingOf(const QRect& mark, const BlockPicture& picture) {
    constexpr double rim = 0.5;
    const QRectF box(
        (QPointF(mark.topLeft()) - picture.origin) * picture.scale, QSizeF(mark.size()) * picture.scale);
    const double around = rim * picture.scale;
    const QRect part = box.adjusted(-around, -around, around, around).toRect() &
        QRect(0, 0, picture.plane.width(), picture.plane.height());
    struct Sums {
        double ink = 0, x = 0, y = 0, xy = 0, yy = 0, xx = 0;
    } sums;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        double ink = 0;
        double x = 0;
        for (int column = part.left(); column <= part.right(); ++column) {
            const int strength = 255 - picture.plane.row(y)[column];
            ink += strength;
            x += strength * (column - part.left());
        }
        if (ink == 0)
            continue;
        const double row = y - part.top();
        sums.ink += ink;
        sums.x += x;
        sums.y += ink * row;
        sums.xy += x * row;
        sums.yy += ink * row * row;
        sums.xx += x * x / ink;
    }
    if (sums.ink == 0)
        return {};
    const double x = sums.x / sums.ink;
    const double y = sums.y / sums.ink;
    const double height = sums.yy / sums.ink - y * y;
    return {height > 0 ? (sums.xy / sums.ink - x * y) / height : 0,
        std::sqrt(std::max(0.0, sums.xx / sums.ink - x * x)) / picture.scale};
}

bool isSlanted(const TextLine& line, const BlockPicture& picture) {
    constexpr double most = -0.06;
    std::vector<double> leans;
    for (const QRect& letter : line.letters)
        leans.push_back(drawingOf(letter, picture).lean);
    const auto middle = leans.begin() + std::ssize(leans) / 2;
    std::ranges::nth_element(leans, middle);
    return !leans.empty() && *middle < most;
}

}  // namespace tralio
