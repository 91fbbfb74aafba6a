#include "programs/recogniser/ground/even_groups.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <utility>

namespace tralio {
namespace {

/// Neighbours differ by hardly anything, or, in a steep gradient, by as much as those before and behind them.
Labels evenGroups(const Channels& channels) {
    constexpr int tolerance = 2;
    constexpr int steepest = 6;
    const size_t count = channels[0].pixels().size();
    const auto holdsInAll = [&](auto condition) {
        return std::ranges::all_of(
            channels, [&](const Plane& plane) { return condition(plane.pixels().data()); });
    };
    const auto isOfGradient = [&](size_t after, size_t before) {
        const size_t step = after - before;
        return before >= 2 * step && after + 2 * step < count && holdsInAll([&](const quint8* pixels) {
            // Dithering shifts a colour by less than a level.
            const int twice = 2 * (pixels[after] - pixels[before]);
            return std::abs(twice) <= 2 * steepest &&
                std::abs(pixels[before] - pixels[before - 2 * step] - twice) <= tolerance &&
                std::abs(pixels[after + 2 * step] - pixels[after] - twice) <= tolerance;
        });
    };
    const auto isEven = [&](size_t a, size_t b) {
        return holdsInAll(
                   [&](const quint8* pixels) { return std::abs(pixels[a] - pixels[b]) <= tolerance; }) ||
            isOfGradient(a, b);
    };
    return connect(
        channels[0].width(), channels[0].height(), Neighbours::four, [](size_t) { return true; }, isEven);
}

/// In which of the wanted groups something holds at nearly all pixels and others of the group so far beside
/// them or below. `holds` takes the indices of the pixel and of the next of those.
template <typename Holds>
std::vector<bool> holdingMostly(const Labels& groups, const std::vector<bool>& wanted, QPoint apart,
    int count, int hundredths, Holds holds) {
    struct Share {
        int all = 0;
        int holding = 0;
    };
    std::vector<Share> shares(wanted.size());
    const size_t step = groups.index(apart.x(), apart.y());
    for (int y = 0; y + count * apart.y() < groups.height; ++y) {
        for (int x = 0; x + count * apart.x() < groups.width; ++x) {
            const size_t i = groups.index(x, y);
            const int group = groups.of[i];
            if (!wanted[static_cast<size_t>(group)] || groups.of[i + step] != group ||
                groups.of[i + static_cast<size_t>(count) * step] != group)
                continue;
            Share& share = shares[static_cast<size_t>(group)];
            ++share.all;
            share.holding += holds(i, i + step) ? 1 : 0;
        }
    }
    std::vector<bool> result(wanted.size());
    std::transform(shares.begin(), shares.end(), result.begin(), [&](const Share& share) {
        return share.all > 0 && share.holding * qint64(100) >= share.all * qint64(hundredths);
    });
    return result;
}

std::vector<bool> findDrawn(
    const Labels& groups, const std::vector<Extent>& extents, const Channels& channels) {
    constexpr int mostlyEqual = 80;
    constexpr int mostlyStraight = 90;
    constexpr int apart = 8;  // the period of ordered dithering
    constexpr int leastArea = 400;
    const auto holdsInAll = [&](auto condition) {
        return std::all_of(
            channels.begin(), channels.end(),
            [&](const Plane& plane) { return condition(plane.pixels().data()); });
    };
    const auto isEqual = [&](size_t a, size_t b) {
        return holdsInAll([&](const quint8* pixels) { return pixels[a] == pixels[b]; });
    };
    const auto isStraight = [&](size_t a, size_t b) {
        return holdsInAll([&](const quint8* pixels) {
            return std::abs(pixels[a] - 2 * pixels[b] + pixels[2 * b - a]) <= 1;
        });
    };
    const std::vector<bool> all(extents.size(), true);
    std::vector<bool> drawn = holdingMostly(groups, all, {1, 0}, 1, mostlyEqual, isEqual);
    const std::vector<bool> below = holdingMostly(groups, all, {0, 1}, 1, mostlyEqual, isEqual);
    std::vector<bool> others(extents.size());
    for (size_t i = 0; i < drawn.size(); ++i) {
        drawn[i] = drawn[i] || below[i];
        others[i] = !drawn[i] && extents[i].area >= leastArea;
    }
    for (const QPoint next : {QPoint(apart, 0), QPoint(0, apart)}) {
        if (std::find(others.begin(), others.end(), true) == others.end())
            break;
        const std::vector<bool> straight = holdingMostly(groups, others, next, 2, mostlyStraight, isStraight);
        for (size_t i = 0; i < others.size(); ++i)
            others[i] = others[i] && straight[i];
    }
    for (size_t i = 0; i < drawn.size(); ++i)
        drawn[i] = drawn[i] || others[i];
    return drawn;
}

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

/// The colour of each group's first pixel, which no other one of it differs from much.
std::vector<Colour> coloursOf(const Labels& groups, const Channels& channels) {
    std::vector<Colour> colours(static_cast<size_t>(groups.count));
    for (size_t i = groups.of.size(); i-- > 0;)
        colours[static_cast<size_t>(groups.of[i])] = {
            channels[0].pixels()[i], channels[1].pixels()[i], channels[2].pixels()[i]};
    return colours;
}

/// A glossy bar is two gradients one above the other, with a small step between them: one area.
Labels withGlossyBars(Labels groups, const Channels& channels) {
    constexpr int largestStep = 10;
    constexpr int leastSlope = 3;
    const auto differBy = [&](size_t a, size_t b) {
        int most = 0;
        for (const Plane& plane : channels)
            most = std::max(most, std::abs(plane.pixels()[a] - plane.pixels()[b]));
        return most;
    };
    const std::vector<Extent> extents = extentsOf(groups);
    std::vector<std::pair<size_t, size_t>> ends(extents.size());  // the first and the last pixel
    for (size_t i = 0; i < groups.of.size(); ++i)
        ends[static_cast<size_t>(groups.of[groups.of.size() - 1 - i])].first = groups.of.size() - 1 - i;
    for (size_t i = 0; i < groups.of.size(); ++i)
        ends[static_cast<size_t>(groups.of[i])].second = i;
    std::vector<bool> areParts(extents.size());  // of a bar, the rows between its halves included
    for (size_t i = 0; i < extents.size(); ++i)
        areParts[i] = extents[i].box.width() >= 4 * extents[i].box.height() &&
            (extents[i].box.height() <= 2 || differBy(ends[i].first, ends[i].second) >= leastSlope);
    std::map<std::pair<int, int>, int> seams;  // how long each is
    const auto width = static_cast<size_t>(groups.width);
    for (size_t i = width; i < groups.of.size(); ++i) {
        const int upper = groups.of[i - width];
        const int lower = groups.of[i];
        if (upper != lower && areParts[static_cast<size_t>(upper)] && areParts[static_cast<size_t>(lower)] &&
            differBy(i - width, i) <= largestStep)
            ++seams[{upper, lower}];
    }
    if (seams.empty())
        return groups;
    PixelForest wholes(extents.size());
    for (const auto& [pair, length] : seams) {
        const auto widthOf = [&](int group) { return extents[static_cast<size_t>(group)].box.width(); };
        // The title in the bar cuts the rows between.
        if (length * 2 >= std::min(widthOf(pair.first), widthOf(pair.second)))
            wholes.join(pair.first, pair.second);
    }
    return connect(
        groups.width, groups.height, Neighbours::four, [](size_t) { return true; },
        [&](size_t a, size_t b) { return wholes.root(groups.of[a]) == wholes.root(groups.of[b]); });
}

}  // namespace

bool areAlike(const Colour& a, const Colour& b) {
    constexpr int tolerance = 4;
    return std::equal(a.begin(), a.end(), b.begin(),
        [](int left, int right) { return std::abs(left - right) <= tolerance; });
}

EvenGroups::EvenGroups(const Channels& channels)
    : labels(withGlossyBars(evenGroups(channels), channels)),
      extents(extentsOf(labels)),
      squares(largestSquaresOf(labels)),
      rows(tallyRows(labels, extents)),
      colours(coloursOf(labels, channels)),
      areDrawn(findDrawn(labels, extents, channels)) {}

}  // namespace tralio
