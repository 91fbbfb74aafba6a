#include "programs/recogniser/flat_areas.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace tralio {
namespace {

Labels evenGroups(const Channels& channels) {
    constexpr int tolerance = 2;
    const auto isEven = [&](size_t a, size_t b) {
        const auto differs = [&](const Plane& plane) {
            return std::abs(plane.pixels()[a] - plane.pixels()[b]) > tolerance;
        };
        return !std::any_of(channels.begin(), channels.end(), differs);
    };
    return connect(
        channels[0].width(), channels[0].height(), Neighbours::four, [](size_t) { return true; }, isEven);
}

/// Which groups were drawn: most of their neighbours beside or below one another are equal, also in a
/// gradient. A sky in a photograph changes all the time, however softly.
std::vector<bool> findDrawn(const Labels& groups, const Channels& channels) {
    struct Pairs {
        int all = 0;
        int equal = 0;

        [[nodiscard]] bool areMostlyEqual() const { return equal * 10 >= all * 8; }
    };
    std::vector<Pairs> beside(static_cast<size_t>(groups.count));
    std::vector<Pairs> below(beside.size());
    const auto count = [&](std::vector<Pairs>& pairs, size_t a, size_t b) {
        if (groups.of[a] != groups.of[b])
            return;
        Pairs& own = pairs[static_cast<size_t>(groups.of[a])];
        const auto isSame = [&](const Plane& plane) { return plane.pixels()[a] == plane.pixels()[b]; };
        ++own.all;
        own.equal += std::all_of(channels.begin(), channels.end(), isSame) ? 1 : 0;
    };
    for (int y = 0; y < groups.height; ++y) {
        for (int x = 0; x < groups.width; ++x) {
            const size_t own = groups.index(x, y);
            if (x + 1 < groups.width)
                count(beside, own, own + 1);
            if (y + 1 < groups.height)
                count(below, own, own + static_cast<size_t>(groups.width));
        }
    }
    std::vector<bool> drawn(beside.size());
    for (size_t i = 0; i < drawn.size(); ++i)
        drawn[i] = beside[i].areMostlyEqual() || below[i].areMostlyEqual();
    return drawn;
}

/// Rows of a group: what they span from their first to their last pixel, and which are nearly full.
struct RowTally {
    int spans = 0;
    bool isFullAbove = false;  ///< in its upper third
    bool isFullBelow = false;
};

std::vector<RowTally> tallyRows(const Labels& groups, const std::vector<Extent>& extents) {
    struct Row {
        int y = -1;
        int first = 0;
        int last = 0;
        int count = 0;
    };
    std::vector<RowTally> tallies(extents.size());
    std::vector<Row> rows(extents.size());
    const auto finish = [&](size_t group) {
        const Row& row = rows[group];
        const QRect& box = extents[group].box;
        if (row.y < 0)
            return;
        tallies[group].spans += row.last - row.first + 1;
        if (row.count * 10 < box.width() * 7)
            return;
        tallies[group].isFullAbove |= (row.y - box.top()) * 3 < box.height();
        tallies[group].isFullBelow |= (box.bottom() - row.y) * 3 < box.height();
    };
    const int* label = groups.of.data();
    for (int y = 0; y < groups.height; ++y) {
        for (int x = 0; x < groups.width; ++x, ++label) {
            const auto group = static_cast<size_t>(*label);
            Row& row = rows[group];
            if (row.y != y) {
                finish(group);
                row = {y, x, x, 0};
            }
            row.last = x;
            ++row.count;
        }
    }
    for (size_t group = 0; group < rows.size(); ++group)
        finish(group);
    return tallies;
}

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

using Colour = std::array<int, 3>;

/// The colour of each group's first pixel, which no other one of it differs from much.
std::vector<Colour> coloursOf(const Labels& groups, const Channels& channels) {
    std::vector<Colour> colours(static_cast<size_t>(groups.count));
    for (size_t i = groups.of.size(); i-- > 0;)
        colours[static_cast<size_t>(groups.of[i])] = {
            channels[0].pixels()[i], channels[1].pixels()[i], channels[2].pixels()[i]};
    return colours;
}

bool areAlike(const Colour& a, const Colour& b) {
    constexpr int tolerance = 4;
    return std::equal(a.begin(), a.end(), b.begin(),
        [](int left, int right) { return std::abs(left - right) <= tolerance; });
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
    Labels groups = evenGroups(channels);
    const std::vector<Extent> extents = extentsOf(groups);
    const std::vector<int> squares = largestSquaresOf(groups);
    const std::vector<RowTally> rows = tallyRows(groups, extents);
    const std::vector<bool> drawn = findDrawn(groups, channels);

    FlatAreas areas;
    std::vector<int> numbers(extents.size(), Labels::none);
    const auto add = [&](size_t group, bool isBar) {
        numbers[group] = areas.labels.count++;
        areas.boxes.push_back(extents[group].box);
        areas.areBars.push_back(isBar);
    };
    for (size_t i = 0; i < extents.size(); ++i) {
        const bool bar = isBar(extents[i], rows[i], unit);
        if (drawn[i] && (bar || squares[i] >= thick * unit || touchesThreeEdges(extents[i].box, groups)))
            add(i, bar);
    }
    // Inside large letters the ground of all shows again.
    constexpr int enclosed = 8;
    const std::vector<Colour> colours = coloursOf(groups, channels);
    std::vector<Colour> grounds;
    for (size_t i = 0; i < extents.size(); ++i)
        if (numbers[i] != Labels::none)
            grounds.push_back(colours[i]);
    for (size_t i = 0; i < extents.size(); ++i) {
        const auto isSame = [&](const Colour& ground) { return areAlike(ground, colours[i]); };
        if (numbers[i] == Labels::none && drawn[i] && squares[i] >= enclosed * unit &&
            std::any_of(grounds.begin(), grounds.end(), isSame))
            add(i, false);
    }
    for (int& label : groups.of)
        label = numbers[static_cast<size_t>(label)];
    groups.count = areas.labels.count;
    areas.labels = std::move(groups);
    return areas;
}

}  // namespace tralio
