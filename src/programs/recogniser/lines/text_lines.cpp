#include "programs/recogniser/lines/text_lines.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

#include "programs/recogniser/lines/bullets.h"
#include "programs/recogniser/lines/label_rows.h"
#include "programs/recogniser/marks/leaders.h"
#include "programs/recogniser/pixels/boxes.h"
#include "programs/recogniser/pixels/place_index.h"

namespace tralio {
namespace {

constexpr int leastLetterHeight = 4;  ///< logical pixels; dots and accents say nothing
/// Of a line's height, which is about that of its type: columns begin at this gap.
constexpr double columnGap = 2.2;

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

void addLetter(TextLine& line, const QRect& letter) {
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

/// Where the next letter of a line may be.
QRect reachOfEnd(const TextLine& line) {
    const QRect last = end(line);
    const int highest = line.box.height() + 3 * last.height();
    return last.adjusted(0, 0, static_cast<int>(columnGap * highest) + 2, 0);
}

/// Letters from left to right, each to the line whose last letters it stands beside.
std::vector<TextLine> chain(std::vector<MarkShape> letters) {
    std::sort(letters.begin(), letters.end(),
        [](const MarkShape& a, const MarkShape& b) { return a.box.left() < b.box.left(); });
    std::vector<TextLine> lines;
    PlaceIndex ends;
    for (const MarkShape& letter : letters) {
        std::optional<size_t> best;
        double mostShared = 0;
        ends.visit(letter.box, [&](size_t i) {
            const TextLine& line = lines[i];
            if (!isOfOneLayer(line, letter) || sharedHeight(line.box, letter.box) <= 0)
                return;
            const QRect last = end(line);
            if (!mayContinue(line, last, letter.box))
                return;
            // In a photograph the last marks of a line may be anything, of any height.
            const int height = line.isShaded ? 1 : (last | letter.box).height();
            const double shared = sharedHeight(last, letter.box) / double(height);
            if (best && std::pair(-shared, i) >= std::pair(-mostShared, *best))
                return;
            best = i;
            mostShared = shared;
        });
        if (!best) {
            best = lines.size();
            lines.push_back({{}, letter.region, letter.isShaded, letter.kind, letter.colour, {}, {}});
        }
        addLetter(lines[*best], letter.box);
        ends.add(*best, reachOfEnd(lines[*best]));
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
    if (gap >= 0 || part.box.height() * 10 > height * 6 ||
        -sharedHeight(part.box, line.box) * 10 > height * 3 || part.box.width() > line.box.width())
        return false;
    // No letter is narrower, and hardly any bears more than two of them: what comes closer is a smaller text,
    // but for the dots at the foot of a Chinese sign.
    if (line.box.adjusted(0, 0, 0, 1).contains(part.box) && part.box.width() * 2 <= height * 3)
        return true;
    const int letterHeight = line.letterHeight();
    const bool areFew = static_cast<int>(part.letters.size()) * letterHeight <= 2 * part.box.width();
    return (areFew || part.letters.size() <= 2) && together <= letterHeight * (line.isShaded ? 5 : 8) / 2;
}

/// How far from a line, or from what may be part of one, the other of the two may be.
QRect reachOfParts(const TextLine& line) {
    const int height = line.box.height();
    const int beside = static_cast<int>(columnGap * 1.5 * height) + 2;
    const int above = height * 3 / 10 + 2;
    return line.box.adjusted(-beside, -above, beside, above);
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
    PlaceIndex index;
    for (size_t i = 0; i < lines.size(); ++i)
        index.add(i, reachOfParts(lines[i]));
    for (size_t i = 0; i < lines.size(); ++i) {
        std::optional<size_t> whole;
        int nearest = 0;
        index.visit(reachOfParts(lines[i]), [&](size_t k) {
            if (k <= i || (!belongsTo(lines[i], lines[k]) && !belongsTo(lines[k], lines[i])))
                return;
            const int distance = std::abs(lines[i].box.center().y() - lines[k].box.center().y());
            if (whole && std::pair(distance, k) >= std::pair(nearest, *whole))
                return;
            whole = k;
            nearest = distance;
        });
        if (!whole)
            continue;
        join(lines[*whole], lines[i]);
        index.add(*whole, reachOfParts(lines[*whole]));
        lines[i].letters.clear();
    }
    std::erase_if(lines, [](const TextLine& line) { return line.letters.empty(); });
}

/// How far from the end of a line small marks may be. In code, signs are further from "x" than that is high.
int reachOf(const TextLine& line) {
    constexpr size_t few = 40;  // among many one is high
    const int height = line.box.height();
    return line.letters.size() > few ? height : std::max(height, line.letterHeight() * 3 / 2);
}

/// How far a small mark is from a line that it may belong to.
std::optional<int> distance(const MarkShape& dot, const TextLine& line) {
    if (!isOfOneLayer(line, dot))
        return std::nullopt;
    const int height = line.box.height();
    const int above = std::max(0, line.box.top() - dot.box.bottom());
    const int below = std::max(0, dot.box.top() - line.box.bottom());
    const int gap = std::max(0, horizontalGap(dot.box, line.box));
    if (above * 10 > height * 5 || below * 10 > height * 4 || gap > reachOf(line))
        return std::nullopt;
    return above + below + gap;
}

/// Where the dots of a line may be.
QRect reachOfDots(const TextLine& line) {
    const int height = line.box.height();
    const int beside = reachOf(line) + 2;
    return line.box.adjusted(-beside, -height / 2 - 2, beside, height * 4 / 10 + 2);
}

/// Large dots and commas are as high as small letters: those that stand alone, beside a line of something
/// higher, go with the dots.
void moveStrayDots(std::vector<TextLine>& lines, std::vector<MarkShape>& dots) {
    constexpr size_t most = 3;
    PlaceIndex index;
    for (size_t i = 0; i < lines.size(); ++i)
        index.add(i, reachOfDots(lines[i]));
    const auto isStray = [&](const TextLine& stray) {
        if (stray.letters.size() > most)
            return false;
        const MarkShape shape{stray.box, stray.region, stray.isShaded, stray.kind, stray.colour};
        bool isBeside = false;
        index.visit(stray.box, [&](size_t i) {
            const TextLine& line = lines[i];
            isBeside = isBeside ||
                (stray.box.height() * 10 <= line.box.height() * 5 &&
                    line.letters.size() > stray.letters.size() && distance(shape, line));
        });
        return isBeside;
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
    PlaceIndex index;
    for (size_t i = 0; i < lines.size(); ++i)
        index.add(i, reachOfDots(lines[i]));
    for (const MarkShape& dot : dots) {
        std::optional<size_t> best;
        int least = 0;
        index.visit(dot.box, [&](size_t i) {
            const std::optional<int> far = distance(dot, lines[i]);
            if (!far || (best && std::pair(*far, i) >= std::pair(least, *best)))
                return;
            best = i;
            least = *far;
        });
        if (!best)
            continue;
        TextLine& line = lines[*best];
        line.dots.push_back(dot.box);
        // Above and below, it would make the next one belong as well.
        line.box.setLeft(std::min(line.box.left(), dot.box.left()));
        line.box.setRight(std::max(line.box.right(), dot.box.right()));
        index.add(*best, reachOfDots(line));
    }
}

/// To lines that they lead to or away from.
void addLeaders(std::vector<TextLine>& lines, const std::vector<std::vector<MarkShape>>& leaders) {
    for (const std::vector<MarkShape>& row : leaders)
        for (TextLine& line : lines)
            if (std::ranges::any_of(
                    row, [&](const MarkShape& dot) { return distance(dot, line).has_value(); }))
                for (const MarkShape& dot : row)
                    line.unread.push_back(dot.box);
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

std::vector<TextLine> findTextLines(const MarkShapes& found, int unit) {
    std::vector<MarkShape> letters;
    std::vector<MarkShape> dots;
    for (const MarkShape& shape : found.shapes)
        (shape.box.height() >= leastLetterHeight * unit ? letters : dots).push_back(shape);
    const std::vector<std::vector<MarkShape>> leaders = takeLeaders(dots);
    std::vector<TextLine> lines = chain(std::move(letters));
    joinParts(lines);
    moveStrayDots(lines, dots);
    addDots(lines, std::move(dots));
    joinParts(lines);  // what signs like "=" stand between is no gap
    cutLabelRows(lines);
    addLeaders(lines, leaders);
    setAsideUnread(lines, found, unit);
    return lines;
}

}  // namespace tralio
