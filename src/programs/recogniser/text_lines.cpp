#include "programs/recogniser/text_lines.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace tralio {
namespace {

constexpr int leastLetterHeight = 4;  ///< logical pixels; dots and accents say nothing
/// Of a line's height, which is about that of its type: columns begin at this gap.
constexpr double columnGap = 2.2;

int sharedHeight(const QRect& a, const QRect& b) {
    return std::min(a.bottom(), b.bottom()) - std::max(a.top(), b.top()) + 1;
}

bool shareRow(const QRect& a, const QRect& b) {
    return sharedHeight(a, b) * 2 >= std::min(a.height(), b.height());
}

int horizontalGap(const QRect& a, const QRect& b) {
    return std::max(a.left(), b.left()) - std::min(a.right(), b.right()) - 1;
}

/// The stretch that the last few letters take, which follows a slanting line.
QRect end(const TextLine& line) {
    constexpr std::ptrdiff_t few = 5;
    QRect box;
    const auto count = std::min(few, std::ssize(line.letters));
    for (auto letter = line.letters.end() - count; letter != line.letters.end(); ++letter)
        box |= *letter;
    return box;
}

template <typename A, typename B>
bool isOfOneLayer(const A& a, const B& b) {
    return a.region == b.region && a.kind == b.kind && a.colour == b.colour;
}

bool isOfSize(int height, int other) {
    constexpr int times = 3;
    return height <= times * other && other <= times * height;
}

void add(TextLine& line, const QRect& letter) {
    line.box |= letter;
    line.letters.push_back(letter);
}

bool mayContinue(const TextLine& line, const QRect& last, const QRect& letter) {
    const int gap = letter.left() - last.right() - 1;
    const int height = (line.box | letter).height();
    if (!shareRow(last, letter) || !isOfSize(last.height(), letter.height()))
        return false;
    if (!line.isShaded)
        return gap <= columnGap * height;
    // In a photograph there are marks everywhere: a line there is level, and its letters stand close.
    return gap <= last.height() && height * 2 <= 3 * std::max(last.height(), letter.height());
}

/// Letters from left to right, each to the line whose last letters it stands beside.
std::vector<TextLine> chain(std::vector<MarkShape> letters) {
    std::sort(letters.begin(), letters.end(),
        [](const MarkShape& a, const MarkShape& b) { return a.box.left() < b.box.left(); });
    std::vector<TextLine> lines;
    for (const MarkShape& letter : letters) {
        TextLine* best = nullptr;
        int mostShared = 0;
        for (TextLine& line : lines) {
            if (!isOfOneLayer(line, letter) || sharedHeight(line.box, letter.box) <= 0)
                continue;
            const QRect last = end(line);
            if (!mayContinue(line, last, letter.box))
                continue;
            const int shared = sharedHeight(last, letter.box);
            if (best && shared <= mostShared)
                continue;
            best = &line;
            mostShared = shared;
        }
        if (!best)
            best = &lines.emplace_back(
                TextLine{{}, letter.region, letter.isShaded, letter.kind, letter.colour, {}, {}});
        add(*best, letter.box);
    }
    return lines;
}

/// Whether `part` is what stands above or below the letters of a line: accents, or the pieces of a sign.
bool belongsTo(const TextLine& part, const TextLine& line) {
    const int height = line.box.height();
    if (!isOfOneLayer(part, line))
        return false;
    const int gap = horizontalGap(part.box, line.box);
    const int together = (part.box | line.box).height();
    if (shareRow(part.box, line.box) && gap <= columnGap * together &&
        together * 2 <= 3 * std::max(part.box.height(), height) &&
        isOfSize(part.letterHeight(), line.letterHeight()))
        return true;
    // No letter is narrower, and hardly any bears more than two of them: what comes closer is a smaller text.
    const bool areFew = static_cast<int>(part.letters.size()) * line.letterHeight() <= 2 * part.box.width();
    const bool isSmall = part.box.height() * 10 <= height * 6 && (areFew || part.letters.size() <= 2);
    const int highest = line.letterHeight() * (line.isShaded ? 5 : 8) / 2;
    return isSmall && together <= highest && gap < 0 &&
        -sharedHeight(part.box, line.box) * 10 <= height * 3 && part.box.width() <= line.box.width();
}

void join(TextLine& line, const TextLine& part) {
    line.box |= part.box;
    line.dots.insert(line.dots.end(), part.dots.begin(), part.dots.end());
    if (part.letterHeight() * 10 < line.letterHeight() * 6) {
        line.dots.insert(line.dots.end(), part.letters.begin(), part.letters.end());
        return;
    }
    line.letters.insert(line.letters.end(), part.letters.begin(), part.letters.end());
    std::sort(line.letters.begin(), line.letters.end(),
        [](const QRect& a, const QRect& b) { return a.left() < b.left(); });
}

void joinParts(std::vector<TextLine>& lines) {
    // The smallest first: an accent goes to its line before lines are compared with one another.
    std::sort(lines.begin(), lines.end(),
        [](const TextLine& a, const TextLine& b) { return a.box.height() < b.box.height(); });
    for (size_t i = 0; i < lines.size(); ++i) {
        TextLine* whole = nullptr;
        int nearest = 0;
        for (size_t k = i + 1; k < lines.size(); ++k) {
            if (!belongsTo(lines[i], lines[k]) && !belongsTo(lines[k], lines[i]))
                continue;
            const int distance = std::abs(lines[i].box.center().y() - lines[k].box.center().y());
            if (whole && distance >= nearest)
                continue;
            whole = &lines[k];
            nearest = distance;
        }
        if (!whole)
            continue;
        join(*whole, lines[i]);
        lines[i].letters.clear();
    }
    std::erase_if(lines, [](const TextLine& line) { return line.letters.empty(); });
}

/// How far a small mark is from a line that it may belong to.
std::optional<int> distance(const MarkShape& dot, const TextLine& line) {
    if (!isOfOneLayer(line, dot))
        return std::nullopt;
    const int height = line.box.height();
    const int above = std::max(0, line.box.top() - dot.box.bottom());
    const int below = std::max(0, dot.box.top() - line.box.bottom());
    const int gap = std::max(0, horizontalGap(dot.box, line.box));
    if (above * 10 > height * 5 || below * 10 > height * 4 || gap > height)
        return std::nullopt;
    return above + below + gap;
}

/// Large dots and commas are as high as small letters: those that stand alone, beside a line of something
/// higher, go with the dots.
void moveStrayDots(std::vector<TextLine>& lines, std::vector<MarkShape>& dots) {
    constexpr size_t most = 3;
    const auto isStray = [&lines](const TextLine& stray) {
        const MarkShape shape{stray.box, stray.region, stray.isShaded, stray.kind, stray.colour};
        return stray.letters.size() <= most &&
            std::any_of(lines.begin(), lines.end(), [&](const TextLine& line) {
                return stray.box.height() * 10 <= line.box.height() * 5 &&
                    line.letters.size() > stray.letters.size() && distance(shape, line);
            });
    };
    std::vector<bool> areStray;
    areStray.reserve(lines.size());
    for (const TextLine& line : lines)
        areStray.push_back(isStray(line));
    for (size_t i = 0; i < lines.size(); ++i) {
        if (!areStray[i])
            continue;
        for (const QRect& letter : lines[i].letters)
            dots.push_back({letter, lines[i].region, lines[i].isShaded, lines[i].kind, lines[i].colour});
        lines[i].letters.clear();
    }
    std::erase_if(lines, [](const TextLine& line) { return line.letters.empty(); });
}

void addDots(std::vector<TextLine>& lines, std::vector<MarkShape> dots) {
    std::sort(dots.begin(), dots.end(),
        [](const MarkShape& a, const MarkShape& b) { return a.box.left() < b.box.left(); });
    for (const MarkShape& dot : dots) {
        TextLine* best = nullptr;
        int least = 0;
        for (TextLine& line : lines) {
            const std::optional<int> far = distance(dot, line);
            if (!far || (best && *far >= least))
                continue;
            best = &line;
            least = *far;
        }
        if (!best)
            continue;
        best->dots.push_back(dot.box);
        // Above and below, it would make the next one belong as well.
        best->box.setLeft(std::min(best->box.left(), dot.box.left()));
        best->box.setRight(std::max(best->box.right(), dot.box.right()));
    }
}

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

/// How much a line seen in a photograph looks like one.
int likelihood(const TextLine& line) {
    const auto even = static_cast<int>(countEven(line));
    return 3 * even - 2 * static_cast<int>(line.letters.size());
}

}  // namespace

int TextLine::letterHeight() const {
    std::vector<int> heights;
    heights.reserve(letters.size());
    for (const QRect& letter : letters)
        heights.push_back(letter.height());
    if (heights.empty())
        return 0;
    const auto middle = heights.begin() + static_cast<std::ptrdiff_t>(heights.size() / 2);
    std::nth_element(heights.begin(), middle, heights.end());
    return *middle;
}

std::vector<TextLine> findTextLines(const std::vector<MarkShape>& shapes, int unit) {
    std::vector<MarkShape> letters;
    std::vector<MarkShape> dots;
    for (const MarkShape& shape : shapes)
        (shape.box.height() >= leastLetterHeight * unit ? letters : dots).push_back(shape);
    std::vector<TextLine> lines = chain(std::move(letters));
    joinParts(lines);
    moveStrayDots(lines, dots);
    addDots(lines, std::move(dots));
    joinParts(lines);  // what signs like "=" stand between is no gap
    return lines;
}

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
    constexpr size_t most = 12;  // those with the most letters; noise never ends
    lines.resize(std::min(lines.size(), most));
    return lines;
}

}  // namespace tralio
