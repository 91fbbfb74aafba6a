#include "programs/recogniser/reading/repeated_lines.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <numeric>

namespace tralio {
namespace {

double areaOf(const QRectF& box) {
    return box.width() * box.height();
}

/// Whether most of the words of one of two lines stand where those of the other do. Around a figure in a pill
/// there may be a gap between words.
bool areSame(const ReadLine& a, const ReadLine& b) {
    constexpr double most = 0.6;
    if (!a.box.intersects(b.box))
        return false;
    const auto sizeOf = [](const ReadLine& line) {
        return std::transform_reduce(line.words.begin(), line.words.end(), 0.0, std::plus(),
            [](const ReadWord& word) { return areaOf(word.box); });
    };
    double shared = 0;
    for (const ReadWord& word : a.words)
        for (const ReadWord& other : b.words)
            shared += areaOf(word.box & other.box);
    return shared > 0 && shared >= most * std::min(sizeOf(a), sizeOf(b));
}

}  // namespace

void addBetterLines(std::vector<ReadLine>& lines, std::vector<ReadLine> further) {
    // A frame that is read as a long word does not replace the figure in it.
    const auto isBetter = [](const ReadLine& line, const ReadLine& other) {
        constexpr double muchSurer = 10;
        const auto weight = [](const ReadLine& some) {
            return some.confidence() * static_cast<double>(some.text().size());
        };
        constexpr double unsure = 65;
        const double surer = line.confidence() - other.confidence();
        const bool isOneUnsure = std::min(line.confidence(), other.confidence()) < unsure;
        return isOneUnsure && std::abs(surer) > muchSurer ? surer > 0 : weight(line) > weight(other);
    };
    std::erase_if(
        further,
        [&](const ReadLine& line) {
            return std::ranges::any_of(
                lines, [&](const ReadLine& known) { return areSame(line, known) && !isBetter(line, known); });
        });
    std::erase_if(lines, [&](const ReadLine& known) {
        return std::ranges::any_of(further, [&](const ReadLine& line) { return areSame(line, known); });
    });
    lines.insert(lines.end(), std::move_iterator(further.begin()), std::move_iterator(further.end()));
}

}  // namespace tralio
