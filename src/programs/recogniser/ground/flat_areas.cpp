#include "programs/recogniser/ground/flat_areas.h"

#include <algorithm>
#include <utility>

#include "programs/recogniser/ground/giant_letters.h"

namespace tralio {
namespace {

/// A band, a bubble, a button or a cell, whose text leaves its upper and lower edges alone. An "m" is as
/// broad, and open at one side.
bool isBar(const Extent& extent, const RowTally& rows, int unit) {
    constexpr int leastHeight = 12;
    constexpr int leastCell = 20;  // "B" and "口" have such edges as well, but much less between them
    const int width = extent.box.width();
    const int height = extent.box.height();
    const qint64 full = qint64(width) * height;
    const qint64 area = extent.area;
    if (qint64(rows.spans) * 100 < full * 85 || !rows.isFullAbove || !rows.isFullBelow)
        return false;
    const bool isBand = height >= leastHeight * unit && width * 2 >= height * 3 && area * 100 >= full * 35;
    const bool isCell = std::min(width, height) >= leastCell * unit && area * 100 >= full * 75;
    return isBand || isCell;
}

/// A pill or a disc around a figure. It is thicker than strokes of its height are.
bool isPill(const Extent& extent, const RowTally& rows, int square, int unit) {
    constexpr int leastHeight = 12;
    constexpr int mostHeight = 24;
    constexpr int mostHeightIfFull = 48;  // no letter has so little in it
    const int width = extent.box.width();
    const int height = extent.box.height();
    const qint64 full = qint64(width) * height;
    const qint64 holes = rows.spans - extent.area;
    const bool isFull = extent.area * qint64(100) >= full * 65;
    if (std::min(width, height) < leastHeight * unit || !rows.isFullAbove || !rows.isFullBelow ||
        height > (isFull ? mostHeightIfFull : mostHeight) * unit)
        return false;
    return qint64(rows.spans) * 100 >= full * 70 && holes * 100 >= full * (isFull ? 2 : 5) &&
        extent.area * qint64(100) >= full * 55 && square * 10 >= height * 3;
}

/// What is left around a closely cut text.
bool touchesThreeEdges(const QRect& box, const Labels& groups) {
    return int(box.left() == 0) + int(box.top() == 0) + int(box.right() == groups.width - 1) +
        int(box.bottom() == groups.height - 1) >=
        3;
}

}  // namespace

FlatAreas findFlatAreas(const Channels& channels, int unit) {
    constexpr int thick = 24;  // thicker than the strokes of all but giant letters
    EvenGroups groups(channels);

    FlatAreas areas;
    std::vector<int> numbers(groups.count(), Labels::none);
    const auto isDrawnShape = [&](size_t group) {
        const Extent& extent = groups.extents[group];
        return isBar(extent, groups.rows[group], unit) ||
            isPill(extent, groups.rows[group], groups.squares[group], unit);
    };
    const auto add = [&](size_t group) {
        numbers[group] = areas.labels.count++;
        areas.boxes.push_back(groups.extents[group].box);
        areas.areBars.push_back(isDrawnShape(group));
    };
    std::vector<size_t> candidates;
    for (size_t i = 0; i < groups.count(); ++i) {
        if (!groups.areDrawn[i])
            continue;
        if (touchesThreeEdges(groups.extents[i].box, groups.labels))
            add(i);
        else if (groups.squares[i] >= thick * unit || isDrawnShape(i))
            candidates.push_back(i);
    }
    const std::vector<size_t> letters = giantLetters(groups, candidates, unit);
    std::vector<Colour> inks;
    inks.reserve(letters.size());
    for (const size_t letter : letters)
        inks.push_back(groups.colours[letter]);
    for (const size_t candidate : candidates)
        if (!std::binary_search(letters.begin(), letters.end(), candidate))
            add(candidate);
    // Inside large letters the ground of all shows again.
    constexpr int enclosed = 8;
    std::vector<Colour> grounds;
    for (size_t i = 0; i < groups.count(); ++i)
        if (numbers[i] != Labels::none)
            grounds.push_back(groups.colours[i]);
    const auto isOneOf = [&](const std::vector<Colour>& colours, size_t group) {
        return std::any_of(colours.begin(), colours.end(),
            [&](const Colour& colour) { return areAlike(colour, groups.colours[group]); });
    };
    for (size_t i = 0; i < groups.count(); ++i)
        if (numbers[i] == Labels::none && groups.areDrawn[i] && groups.squares[i] >= enclosed * unit &&
            isOneOf(grounds, i) && !isOneOf(inks, i))
            add(i);
    for (int& label : groups.labels.of)
        label = numbers[static_cast<size_t>(label)];
    groups.labels.count = areas.labels.count;
    areas.labels = std::move(groups.labels);
    return areas;
}

}  // namespace tralio
