#include "programs/recogniser/mending/lone_dashes.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

namespace tralio {
namespace {

bool mayBeDash(const MarkShape& shape, int unit) {
    constexpr int thickest = 2;
    constexpr int leastWidth = 3;
    return !shape.isShaded && shape.box.height() <= thickest * unit &&
        shape.box.width() >= leastWidth * unit && shape.box.width() * 2 >= 5 * shape.box.height();
}

bool isBeside(const QRectF& dash, const QRectF& text) {
    const double depth = (dash.center().y() - text.top()) / text.height();
    return depth > 0.35 && depth < 0.75 && dash.width() < 1.3 * text.height();
}

bool isNear(const QRectF& dash, const QRectF& text) {
    const double gap = std::max(dash.left(), text.left()) - std::min(dash.right(), text.right());
    const double below = std::max(dash.top(), text.top()) - std::min(dash.bottom(), text.bottom());
    return gap < text.height() && below < 0;
}

bool isInColumn(const QRectF& dash, const QRectF& text, double tolerance) {
    const auto isAt = [&](double a, double b) { return std::abs(a - b) <= tolerance; };
    return isAt(dash.left(), text.left()) || isAt(dash.right(), text.right()) ||
        isAt(dash.center().x(), text.center().x());
}

/// The height of its row, if it is alone in a cell.
std::optional<QRectF> rowOf(const QRectF& dash, const std::vector<ReadLine>& lines, double tolerance) {
    constexpr int fewest = 2;
    int row = 0;
    int column = 0;
    QRectF highest;
    for (const ReadLine& line : lines) {
        if (isNear(dash, line.box))
            return std::nullopt;
        if (isBeside(dash, line.box)) {
            ++row;
            if (line.box.height() > highest.height())
                highest = line.box;
        } else if (isInColumn(dash, line.box, tolerance)) {
            ++column;
        }
    }
    return row >= fewest && column >= fewest ? std::optional(highest) : std::nullopt;
}

QChar dashOf(double width, double height) {
    constexpr double widestHyphen = 0.41;
    constexpr double widestEnDash = 0.8;
    return width < widestHyphen * height ? u'-' : width < widestEnDash * height ? u'–' : u'—';
}

}  // namespace

void addLoneDashes(std::vector<ReadLine>& lines, const std::vector<MarkShape>& shapes, int unit) {
    constexpr double sure = 90;
    std::vector<ReadLine> dashes;
    for (const MarkShape& shape : shapes) {
        if (!mayBeDash(shape, unit))
            continue;
        const QRectF dash(shape.box);
        const std::optional<QRectF> row = rowOf(dash, lines, 1.5 * unit);
        if (!row)
            continue;
        const QRectF box(dash.left(), row->top(), dash.width(), row->height());
        // A piece of an icon has others around it.
        const QRectF around = box.adjusted(-box.height(), 0, box.height(), 0);
        if (std::ranges::count_if(
                shapes, [&](const MarkShape& other) { return around.intersects(QRectF(other.box)); }) > 1)
            continue;
        dashes.push_back({{{QString(dashOf(dash.width(), row->height())), sure, 0, {}, box}}, box});
    }
    lines.insert(lines.end(), std::move_iterator(dashes.begin()), std::move_iterator(dashes.end()));
}

}  // namespace tralio
