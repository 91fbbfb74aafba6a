#include "programs/recogniser/lines/even_lines.h"

#include <algorithm>
#include <map>

#include "programs/recogniser/pixels/boxes.h"

namespace tralio {
namespace {

size_t countEven(const TextLine& line) {
    const int height = line.letterHeight();
    return static_cast<size_t>(
        std::count_if(line.letters.begin(), line.letters.end(), [height](const QRect& letter) {
            return letter.height() * 10 >= height * 6 && letter.height() * 10 <= height * 17;
        }));
}

/// Whether letters are as even in height, and as many, as those of a text.
bool isEven(const TextLine& line) {
    constexpr size_t fewest = 4;
    return line.letters.size() >= fewest && line.box.width() >= 2 * line.box.height() &&
        countEven(line) * 10 >= line.letters.size() * 6 && line.box.height() <= 3 * line.letterHeight();
}

/// Whether there is hardly a doubt that it is text.
bool isRegular(const TextLine& line) {
    constexpr size_t many = 12;
    return line.letters.size() >= many && countEven(line) * 100 >= line.letters.size() * 85;
}

/// How much a line seen in a photograph looks like one.
int likelihood(const TextLine& line) {
    const auto even = static_cast<int>(countEven(line));
    return 3 * even - 2 * static_cast<int>(line.letters.size());
}

}  // namespace

std::vector<TextLine> evenLines(std::vector<TextLine> sightings) {
    std::erase_if(
        sightings, [](const TextLine& line) { return !isEven(line); });
    std::stable_sort(sightings.begin(), sightings.end(),
        [](const TextLine& a, const TextLine& b) { return likelihood(a) > likelihood(b); });
    std::vector<TextLine> lines;
    for (TextLine& sighting : sightings) {
        const auto same = std::find_if(lines.begin(), lines.end(), [&](const TextLine& line) {
            return line.region == sighting.region && shareRow(line.box, sighting.box) &&
                horizontalGap(line.box, sighting.box) <= 0;
        });
        if (same == lines.end()) {
            lines.push_back(std::move(sighting));
            continue;
        }
        // What was lost of it in one kind may show in another.
        const QRect both = same->box | sighting.box;
        if (both.height() * 4 <= same->box.height() * 5)
            same->box = both;
    }
    constexpr size_t most = 12;  // of a region, those with the most letters; noise never ends
    std::map<int, size_t> counts;
    std::erase_if(
        lines, [&](const TextLine& line) { return !isRegular(line) && ++counts[line.region] > most; });
    return lines;
}

}  // namespace tralio
