#include "programs/recogniser/pixels/noise.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>

namespace tralio {
namespace {

using Colour = std::array<int, 3>;

Colour colourAt(const Channels& channels, size_t i) {
    return {channels[0].pixels()[i], channels[1].pixels()[i], channels[2].pixels()[i]};
}

/// By how much two colours differ in the channel where they differ most.
int distance(const Colour& a, const Colour& b) {
    return std::max({std::abs(a[0] - b[0]), std::abs(a[1] - b[1]), std::abs(a[2] - b[2])});
}

/// Whether colours change to and fro about a step between neighbours. In a steep gradient they go on in one
/// direction, however that is dithered.
bool isZigzag(const Channels& channels, size_t left, size_t right) {
    return std::ranges::any_of(
        channels,
        [&](const Plane& plane) {
            const quint8* pixels = plane.pixels().data();
            const int step = pixels[right] - pixels[left];
            return std::abs(step) >= 2 &&
                (step * (pixels[left] - pixels[left - 1]) < 0 ||
                    step * (pixels[right + 1] - pixels[right]) < 0);
        });
}

/// How far colours of one ground lie from it; nothing for a picture without noise, whose neighbouring pixels
/// are equal, of one gradient, or clearly different.
std::optional<int> reachOfNoise(const Channels& channels) {
    constexpr size_t slight = 7;
    constexpr size_t leastShare = 45;  // thousandths
    std::array<size_t, 256> counts{};
    size_t all = 0;
    size_t slightOnes = 0;
    const int width = channels[0].width();
    for (int y = 0; y < channels[0].height(); ++y) {
        const size_t row = static_cast<size_t>(y) * static_cast<size_t>(width);
        for (size_t x = 2; x + 1 < static_cast<size_t>(width); ++x) {
            const auto step =
                static_cast<size_t>(distance(colourAt(channels, row + x - 1), colourAt(channels, row + x)));
            ++counts[step];
            ++all;
            slightOnes += step >= 2 && step < slight && isZigzag(channels, row + x - 1, row + x) ? 1 : 0;
        }
    }
    if (slightOnes * 1000 <= all * leastShare)
        return std::nullopt;
    size_t below = 0;
    int median = 0;
    while ((below += counts[static_cast<size_t>(median)]) * 2 < all)
        ++median;
    return std::clamp(4 * median, 8, 16);
}

using Histogram = std::array<size_t, 256>;

/// The middle of the `2 * reach + 1` levels that occur most.
int peakOf(const Histogram& counts, int reach) {
    int best = 0;
    size_t most = 0;
    for (int level = 0; level < 256; ++level) {
        size_t sum = 0;
        for (int other = std::max(0, level - reach); other <= std::min(255, level + reach); ++other)
            sum += counts[static_cast<size_t>(other)];
        if (sum > most) {
            most = sum;
            best = level;
        }
    }
    return best;
}

/// Which ground each pixel is of, counted from 1.
using Grounds = std::vector<quint8>;

/// The usual colour of those pixels that are of no ground yet.
Colour usualColour(const Channels& channels, const Grounds& grounds, int reach) {
    const auto grey = [&](size_t i) {
        const Colour colour = colourAt(channels, i);
        return (colour[0] + 2 * colour[1] + colour[2]) / 4;
    };
    Histogram greys{};
    for (size_t i = 0; i < grounds.size(); ++i)
        if (grounds[i] == 0)
            ++greys[static_cast<size_t>(grey(i))];
    const int peak = peakOf(greys, reach / 2);
    std::array<Histogram, 3> levels{};
    for (size_t i = 0; i < grounds.size(); ++i) {
        if (grounds[i] != 0 || std::abs(grey(i) - peak) > reach / 2)
            continue;
        const Colour colour = colourAt(channels, i);
        for (size_t channel = 0; channel < colour.size(); ++channel)
            ++levels[channel][static_cast<size_t>(colour[channel])];
    }
    return {peakOf(levels[0], 1), peakOf(levels[1], 1), peakOf(levels[2], 1)};
}

/// Whether pixels side by side are of similar grounds all over: those of a photograph.
bool areMingled(const Grounds& grounds, const std::vector<Colour>& colours, int width, int reach) {
    size_t pairs = 0;
    size_t mingled = 0;
    for (size_t i = 1; i < grounds.size(); ++i) {
        const size_t a = grounds[i - 1];
        const size_t b = grounds[i];
        if (a == 0 || b == 0 || i % static_cast<size_t>(width) == 0)
            continue;
        ++pairs;
        const int difference = distance(colours[a - 1], colours[b - 1]);
        mingled += difference > 0 && difference <= 4 * reach ? 1 : 0;
    }
    return mingled * 1000 > pairs * 18;
}

}  // namespace

Channels withoutNoise(Channels channels) {
    constexpr size_t most = 8;
    constexpr size_t leastOfEach = 1;  // of a hundred pixels
    constexpr size_t leastOfFirst = 25;
    constexpr size_t leastOfAll = 50;
    const std::optional<int> reach = reachOfNoise(channels);
    if (!reach)
        return channels;
    Grounds grounds(channels[0].pixels().size());
    std::vector<Colour> colours;
    std::vector<size_t> counts;
    size_t all = 0;
    while (colours.size() < most) {
        const Colour colour = usualColour(channels, grounds, *reach);
        const auto isNear = [&](size_t i) {
            return grounds[i] == 0 && distance(colourAt(channels, i), colour) <= *reach;
        };
        size_t count = 0;
        for (size_t i = 0; i < grounds.size(); ++i)
            count += isNear(i) ? 1 : 0;
        if (count * 100 < grounds.size() * leastOfEach)
            break;
        for (size_t i = 0; i < grounds.size(); ++i)
            if (isNear(i))
                grounds[i] = static_cast<quint8>(colours.size() + 1);
        // Colours beside a much more usual one are the noise of that.
        constexpr size_t times = 3;
        size_t parent = 0;
        while (parent < colours.size() &&
            (counts[parent] < times * count || distance(colours[parent], colour) > *reach + 12))
            ++parent;
        colours.push_back(parent < colours.size() ? colours[parent] : colour);
        counts.push_back(count);
        all += count;
    }
    const bool isPage = !counts.empty() && counts[0] * 100 >= grounds.size() * leastOfFirst &&
        all * 100 >= grounds.size() * leastOfAll;
    if (!isPage || areMingled(grounds, colours, channels[0].width(), *reach))
        return channels;
    for (size_t i = 0; i < grounds.size(); ++i)
        for (size_t channel = 0; grounds[i] != 0 && channel < channels.size(); ++channel)
            channels[channel].pixels()[i] = static_cast<quint8>(colours[grounds[i] - 1U][channel]);
    return channels;
}

}  // namespace tralio
