#include "programs/recogniser/marks/drawn_signs.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace tralio {
namespace {

/// What a row or a column has, counted from the mark's corner.
struct Span {
    int first = 0;
    int last = -1;
    int count = 0;

    [[nodiscard]] int length() const { return last - first + 1; }
    [[nodiscard]] bool isSolid() const { return count > 0 && count == length(); }
    [[nodiscard]] double middle() const { return (first + last) / 2.0; }
};

enum class Direction { rows, columns };

std::vector<Span> spansOf(const LabelledMark& mark, Direction direction) {
    const bool areRows = direction == Direction::rows;
    std::vector<Span> spans(static_cast<size_t>(areRows ? mark.box.height() : mark.box.width()));
    const int length = areRows ? mark.box.width() : mark.box.height();
    for (size_t i = 0; i < spans.size(); ++i) {
        for (int k = 0; k < length; ++k) {
            const int at = static_cast<int>(i);
            if (!(areRows ? mark.hasInk(k, at) : mark.hasInk(at, k)))
                continue;
            Span& span = spans[i];
            span.first = span.count++ == 0 ? k : span.first;
            span.last = k;
        }
    }
    return spans;
}

/// Whether spans are solid, and shorter from one to the next, evenly at both ends.
bool narrows(std::vector<Span> spans, int widest) {
    if (spans.front().length() < spans.back().length())
        std::ranges::reverse(spans);
    const int first = spans.front().length();
    const int last = spans.back().length();
    if (first * 10 < widest * 8 || last * 2 > widest)
        return false;
    const double step = double(first - last) / double(spans.size() - 1);
    const auto isEven = [&](const Span& span) {
        constexpr double tolerance = 1.6;
        const double wanted = first - step * double(&span - spans.data());
        return span.isSolid() && std::abs(span.length() - wanted) <= tolerance &&
            std::abs(span.middle() * 2 - (widest - 1)) <= 1;
    };
    return step >= 0.6 && std::ranges::all_of(spans, isEven);
}

/// Whether thin spans go straight to one side as far as their middle, and back.
bool areBent(const std::vector<Span>& spans, int deep) {
    const size_t half = (spans.size() - 1) / 2;
    const double first = spans.front().middle();
    const double tip = spans[half].middle();
    const double tolerance = std::max(1.0, deep * 0.12);
    if (std::abs(tip - first) * 10 < deep * 4.0)
        return false;
    // A brace stands upright between its ends and its tip.
    if (std::abs(spans[half * 3 / 4].middle() - spans[half / 4].middle()) < 0.35 * std::abs(tip - first))
        return false;
    for (size_t i = 0; i < spans.size(); ++i) {
        const size_t mirrored = spans.size() - 1 - i;
        const double wanted = first + (tip - first) * double(std::min(i, mirrored)) / double(half);
        if (!spans[i].isSolid() || spans[i].length() * 2 > deep + 2 ||
            std::abs(spans[i].middle() - wanted) > tolerance ||
            std::abs(spans[i].middle() - spans[mirrored].middle()) > 1)
            return false;
    }
    return true;
}

/// Whether it is the same after a quarter turn, and in a mirror.
bool isRegular(const LabelledMark& mark) {
    const int side = mark.box.width();
    if (side != mark.box.height())
        return false;
    int ink = 0;
    int differing = 0;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const bool isInk = mark.hasInk(x, y);
            ink += isInk ? 1 : 0;
            differing += isInk != mark.hasInk(y, x) || isInk != mark.hasInk(side - 1 - x, y) ? 1 : 0;
        }
    }
    return differing * 12 <= ink;
}

}  // namespace

bool isArrowhead(const LabelledMark& mark) {
    const auto [low, high] = std::minmax({mark.box.width(), mark.box.height()});
    return low >= 4 && high <= 3 * low &&
        (narrows(spansOf(mark, Direction::rows), mark.box.width()) ||
            narrows(spansOf(mark, Direction::columns), mark.box.height()));
}

bool isDrawnCross(const LabelledMark& mark) {
    const int side = mark.box.width();
    if (side < 6 || !isRegular(mark) || !mark.hasInk(side / 2, side / 2) || !mark.hasInk(1, 1))
        return false;
    int ink = 0;
    int beside = 0;  // the diagonals
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            if (!mark.hasInk(x, y))
                continue;
            ++ink;
            beside += std::min(std::abs(x - y), std::abs(x + y - side + 1)) > std::max(1, side / 8) ? 1 : 0;
        }
    }
    return beside * 12 <= ink && ink >= 2 * side - 2;
}

bool isChevron(const LabelledMark& mark) {
    constexpr std::ptrdiff_t least = 8;
    const auto points = [&](Direction direction, int deep) {
        const std::vector<Span> spans = spansOf(mark, direction);
        const auto length = std::ssize(spans);
        return length >= least && deep * 100 >= length * 45 && deep * 100 <= length * 72 &&
            areBent(spans, deep);
    };
    return points(Direction::rows, mark.box.width()) || points(Direction::columns, mark.box.height());
}

bool isDrawnPlus(const LabelledMark& mark) {
    const int side = mark.box.width();
    if (!isRegular(mark) || !mark.hasInk(side / 2, side / 2))
        return false;
    int beside = 0;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            beside += mark.hasInk(x, y) &&
                    std::min(std::abs(2 * x - side + 1), std::abs(2 * y - side + 1)) > std::max(2, side / 4)
                ? 1
                : 0;
    return beside == 0;
}

bool isTick(const LabelledMark& mark) {
    const int width = mark.box.width();
    const int height = mark.box.height();
    if (height < 5 || width * 10 < height * 8 || width > 2 * height)
        return false;
    const std::vector<Span> columns = spansOf(mark, Direction::columns);
    const auto isOfStroke = [height](const Span& span) {
        return span.isSolid() && span.length() * 3 <= height * 2;
    };
    if (!std::ranges::all_of(columns, isOfStroke))
        return false;
    const auto foot = std::ranges::max_element(columns, {}, &Span::middle);
    const auto at = foot - columns.begin();
    const auto goesUp = [](const Span& a, const Span& b) { return b.middle() <= a.middle() + 0.5; };
    const auto goesDown = [](const Span& a, const Span& b) { return b.middle() >= a.middle() - 0.5; };
    const auto holds = [](auto first, auto last, auto condition) {
        return std::adjacent_find(
                   first, last, [&](const Span& a, const Span& b) { return !condition(a, b); }) == last;
    };
    const double first = columns.front().middle();
    return at * 100 >= width * 15 && at * 100 <= width * 55 && foot->last == height - 1 &&
        columns.back().middle() * 100 <= height * 35 && columns.back().first <= 1 &&
        columns.front().first * 5 >= height && first * 4 >= height &&
        foot->middle() - first >= std::max(1.0, height * 0.12) &&
        holds(columns.begin(), foot + 1, goesDown) && holds(foot, columns.end(), goesUp);
}

bool isCheckBox(const LabelledMark& mark, int area, int unit, int leastSide) {
    constexpr int mostSide = 22;
    const int side = mark.box.width();
    if (side < leastSide * unit || side > mostSide * unit || area > 9 * unit * side || !isRegular(mark))
        return false;
    int edge = 0;
    for (int along = 0; along < side; ++along) {
        bool hasInk = false;
        for (int deep = 0; deep < 2 * unit; ++deep)
            hasInk = hasInk || mark.hasInk(along, deep);
        edge += hasInk ? 1 : 0;
    }
    return edge * 10 >= side * 8;
}

}  // namespace tralio
