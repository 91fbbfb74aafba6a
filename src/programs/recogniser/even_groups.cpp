#include "programs/recogniser/even_groups.h"

#include <algorithm>
#include <cstdlib>
#include <functional>

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

/// Of how many places in a group something holds.
struct Share {
    int all = 0;
    int holding = 0;

    void count(bool holds) {
        ++all;
        holding += holds ? 1 : 0;
    }
    [[nodiscard]] bool isAtLeast(int hundredths) const {
        return all > 0 && holding * 100LL >= all * qint64(hundredths);
    }
};

std::vector<bool> findDrawn(const Labels& groups, const Channels& channels) {
    constexpr int mostlyEqual = 80;
    constexpr int mostlyStraight = 90;
    constexpr int apart = 8;  // the period of ordered dithering
    const auto holdsInAll = [&](auto condition) {
        return std::all_of(channels.begin(), channels.end(),
            [&](const Plane& plane) { return condition(plane.pixels().data()); });
    };
    std::vector<bool> areEqual(static_cast<size_t>(groups.count));
    std::vector<bool> areStraight(areEqual.size(), true);
    for (const QPoint next : {QPoint(1, 0), QPoint(0, 1)}) {
        std::vector<Share> equal(areEqual.size());
        std::vector<Share> straight(areEqual.size());
        const size_t step = groups.index(next.x(), next.y());
        for (int y = 0; y < groups.height; ++y) {
            for (int x = 0; x < groups.width; ++x) {
                const size_t i = groups.index(x, y);
                const auto isOfGroup = [&](int steps) {
                    return x + steps * next.x() < groups.width && y + steps * next.y() < groups.height &&
                        groups.of[i + static_cast<size_t>(steps) * step] == groups.of[i];
                };
                const auto group = static_cast<size_t>(groups.of[i]);
                if (isOfGroup(1))
                    equal[group].count(
                        holdsInAll([&](const quint8* pixels) { return pixels[i] == pixels[i + step]; }));
                if (isOfGroup(apart) && isOfGroup(2 * apart))
                    straight[group].count(holdsInAll([&](const quint8* pixels) {
                        return std::abs(pixels[i] - 2 * pixels[i + apart * step] +
                                   pixels[i + 2 * apart * step]) <= 1;
                    }));
            }
        }
        for (size_t i = 0; i < areEqual.size(); ++i) {
            areEqual[i] = areEqual[i] || equal[i].isAtLeast(mostlyEqual);
            areStraight[i] = areStraight[i] && straight[i].isAtLeast(mostlyStraight);
        }
    }
    std::transform(
        areEqual.begin(), areEqual.end(), areStraight.begin(), areEqual.begin(), std::logical_or<bool>());
    return areEqual;
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

}  // namespace

bool areAlike(const Colour& a, const Colour& b) {
    constexpr int tolerance = 4;
    return std::equal(a.begin(), a.end(), b.begin(),
        [](int left, int right) { return std::abs(left - right) <= tolerance; });
}

EvenGroups::EvenGroups(const Channels& channels)
    : labels(evenGroups(channels)),
      extents(extentsOf(labels)),
      squares(largestSquaresOf(labels)),
      rows(tallyRows(labels, extents)),
      colours(coloursOf(labels, channels)),
      areDrawn(findDrawn(labels, channels)) {}

}  // namespace tralio
