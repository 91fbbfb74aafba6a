#include "programs/recogniser/marks/outlined_letters.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace tralio {

std::vector<Rim> rimsOf(const Labels& groups, const std::vector<bool>& wanted, const TextMarks& marks) {
    constexpr int width = 3;  // of a rim with its blur
    constexpr int leastContrast = 80;
    constexpr int leastDifference = 40;
    const Channels& channels = marks.channels();
    const Channels& ground = marks.ground().colours();
    const auto light = [&](size_t i) {
        return channels[0].pixels()[i] + channels[1].pixels()[i] + channels[2].pixels()[i];
    };
    const auto differs = [](const Channels& a, size_t i, const Channels& b, size_t j, int least) {
        for (size_t channel = 0; channel < a.size(); ++channel)
            if (std::abs(a[channel].pixels()[i] - b[channel].pixels()[j]) >= least)
                return true;
        return false;
    };
    constexpr std::array<std::pair<int, int>, 4> directions{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}};
    std::vector<Rim> rims(static_cast<size_t>(groups.count));
    for (int y = width; y < groups.height - width; ++y) {
        for (int x = width; x < groups.width - width; ++x) {
            const int group = groups.at(x, y);
            if (group == Labels::none || !wanted[static_cast<size_t>(group)])
                continue;
            for (const auto& [dx, dy] : directions) {
                if (groups.at(x + dx, y + dy) == group)
                    continue;
                Rim& rim = rims[static_cast<size_t>(group)];
                const size_t pixel = groups.index(x, y);
                size_t beside = pixel;  // where the rim is darkest
                for (int step = 1; step <= width; ++step)
                    if (const size_t next = groups.index(x + step * dx, y + step * dy);
                        light(next) < light(beside))
                        beside = next;
                ++rim.length;
                if (!differs(channels, pixel, channels, beside, leastContrast))
                    continue;
                ++rim.contrast;
                if (differs(channels, beside, ground, beside, leastDifference) &&
                    differs(channels, pixel, ground, pixel, leastDifference))
                    ++rim.own;
            }
        }
    }
    return rims;
}

std::vector<QRect> findOutlinedLetters(const Labels& ink, const TextMarks& marks) {
    constexpr int leastHeight = 8;
    constexpr int mostHeight = 120;
    constexpr int leastArea = 6;
    constexpr size_t fewest = 4;
    constexpr size_t most = 1000;  // grain has more
    const std::vector<Extent> extents = extentsOf(ink);
    std::vector<bool> wanted(extents.size());
    for (size_t i = 0; i < extents.size(); ++i)
        wanted[i] = extents[i].area >= leastArea * marks.unit() &&
            extents[i].box.height() <= mostHeight * marks.unit();
    const std::vector<Rim> rims = rimsOf(ink, wanted, marks);
    std::vector<QRect> outlined;
    std::vector<QRect> others;
    for (size_t i = 0; i < rims.size(); ++i) {
        const QRect& box = extents[i].box;
        if (!rims[i].isClosed())
            continue;
        const bool isOutlined = rims[i].isOutline() && box.height() >= leastHeight * marks.unit();
        (isOutlined ? outlined : others).push_back(box);
    }
    if (outlined.size() < fewest || outlined.size() > most)
        return {};
    std::vector<QRect> letters = outlined;
    for (size_t i = 0; i < letters.size(); ++i) {
        const int height = letters[i].height();
        const QRect around = letters[i].adjusted(-3 * height, -height / 2, 3 * height, height / 2);
        const auto beside = std::partition(
            others.begin(), others.end(), [&](const QRect& box) { return !around.intersects(box); });
        letters.insert(letters.end(), beside, others.end());
        others.erase(beside, others.end());
    }
    return letters;
}

}  // namespace tralio
