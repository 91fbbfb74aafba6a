#include "programs/recogniser/lines/label_rows.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>

#include "programs/recogniser/pixels/boxes.h"

namespace tralio {
namespace {

/// Whether letters have one width, as in code. Columns of that are of any number of blanks, which engines
/// count.
bool isOfOnePitch(const TextLine& line) {
    std::vector<double> places;  // but of quotes, each of which is two
    const int height = line.letterHeight();
    for (const QRect& letter : line.letters)
        if (letter.height() * 10 >= height * 7 && letter.bottom() > line.box.center().y())
            places.push_back(QRectF(letter).center().x());
    std::vector<double> steps;
    for (size_t i = 1; i < places.size(); ++i)
        steps.push_back(places[i] - places[i - 1]);
    if (steps.empty())
        return false;
    const auto quarter = steps.begin() + std::ssize(steps) / 4;
    std::ranges::nth_element(steps, quarter);
    const double pitch = std::max(1.0, *quarter);
    std::erase_if(
        steps, [pitch](double step) { return step > 3 * pitch; });
    const auto isEven = [pitch](double step) {
        return std::abs(step / pitch - std::round(step / pitch)) <= 0.15;
    };
    return std::ranges::count_if(steps, isEven) * 10 >= std::ssize(steps) * 8;
}

/// Chinese signs and digits have one pitch, too, but no letter of code is as wide.
bool isCode(const TextLine& line) {
    const int height = line.letterHeight();
    return isOfOnePitch(line) && std::ranges::none_of(line.letters, [height](const QRect& letter) {
        return letter.width() * 10 >= height * 11 && letter.height() * 10 >= height * 11;
    });
}

/// The right edges behind which a row of labels is to be cut. Engines take the gaps between labels for
/// blanks, and join the words inside them; not so among the many blanks of a sentence.
std::vector<int> labelEnds(const TextLine& line) {
    constexpr double leastBlank = 0.3;  // of the usual height of letters; that of "ll" is less
    constexpr double leastGap = 0.8;    // of the line's height
    constexpr double leastStep = 2.2;
    constexpr std::ptrdiff_t mostBlanks = 4;  // for each gap between labels
    constexpr size_t fewest = 8;
    std::vector<QRect> marks = line.letters;
    marks.insert(marks.end(), line.dots.begin(), line.dots.end());
    std::ranges::sort(marks, {}, [](const QRect& mark) { return mark.left(); });
    const int height = line.box.height();
    const double blank = leastBlank * line.letterHeight();
    struct Gap {
        int width;
        int after;
    };
    std::vector<Gap> gaps;
    QRect last = marks.front();
    for (const QRect& mark : marks) {
        const int width = horizontalGap(last, mark);
        // What follows a comma or a full stop is no label.
        if (width >= blank && last.top() <= line.box.center().y())
            gaps.push_back({width, last.right()});
        last = width > 0 ? mark : last | mark;
    }
    std::ranges::sort(gaps, {}, &Gap::width);
    const auto widest = std::ranges::adjacent_find(gaps, [&](const Gap& a, const Gap& b) {
        return b.width >= leastGap * height && b.width >= leastStep * a.width;
    });
    std::vector<int> ends;
    if (widest == gaps.end())
        return ends;
    std::ranges::transform(std::next(widest), gaps.end(), std::back_inserter(ends), &Gap::after);
    const std::ptrdiff_t blanks = std::ssize(gaps) - std::ssize(ends);
    // With hardly a blank there are but words, such as those of a sentence with double blanks.
    if (std::ssize(ends) * mostBlanks < blanks || blanks * 3 < std::ssize(ends) + 1 ||
        line.letters.size() < fewest || isOfOnePitch(line))
        return {};
    std::ranges::sort(ends);
    return ends;
}

/// How high letters stand above a foot, but for the few that are highest.
int rise(const std::vector<QRect>& letters, int foot) {
    std::vector<int> heights;
    heights.reserve(letters.size());
    for (const QRect& letter : letters)
        heights.push_back(foot - letter.top() + 1);
    const auto high = heights.begin() + std::ssize(heights) * 8 / 10;
    std::ranges::nth_element(heights, high);
    return *high;
}

/// The right edge of what a small time stands behind, as in the bubbles of a chat. Beside it engines take its
/// digits for small letters.
std::vector<int> textBeforeSmallTime(const TextLine& line) {
    constexpr double leastGap = 0.75;  // of the height of the text's capitals
    constexpr std::ptrdiff_t fewest = 3;
    constexpr std::ptrdiff_t most = 12;
    std::vector<QRect> marks = line.letters;
    marks.insert(marks.end(), line.dots.begin(), line.dots.end());
    std::ranges::sort(
        marks, {}, [](const QRect& mark) { return mark.left(); });
    const auto isWide = [wide = leastGap * line.letterHeight()](const QRect& right, const QRect& left) {
        return horizontalGap(left, right) >= wide;
    };
    const auto behind = std::adjacent_find(marks.rbegin(), marks.rend(), isWide);
    if (behind == marks.rend())
        return {};
    const std::vector<QRect> text(marks.begin(), std::next(behind).base());
    const std::vector<QRect> time(std::next(behind).base(), marks.end());
    if (std::ssize(time) <= fewest || std::ssize(time) > most || std::ssize(text) < fewest)
        return {};
    const int height = std::ranges::max_element(time, {}, &QRect::height)->height();
    const int foot = footOf(time);
    const auto isDigit = [&](const QRect& mark) {
        return std::abs(mark.bottom() - foot) <= 1 && height - mark.height() <= 1 && mark.width() <= height;
    };
    const auto isPoint = [&](const QRect& mark) {
        return mark.height() * 3 <= height && mark.bottom() <= foot + 1 && mark.top() > foot - height;
    };
    const std::ptrdiff_t digits = std::ranges::count_if(time, isDigit);
    const std::ptrdiff_t points = std::ranges::count_if(time, isPoint);
    const int textFoot = footOf(text);
    const int capital = rise(text, textFoot);
    const bool isSmaller = foot >= textFoot && height * 100 <= capital * 88;
    const bool isLower = (foot - textFoot) * 8 >= height;
    return digits >= fewest && points > 0 && digits + points == std::ssize(time) &&
            horizontalGap(text.back(), time.front()) >= leastGap * capital && (isSmaller || isLower) &&
            !isOfOnePitch(line)
        ? std::vector{text.back().right()}
        : std::vector<int>();
}

struct WideGap {
    int left;
    int right;

    [[nodiscard]] WideGap operator&(const WideGap& other) const {
        return {std::max(left, other.left), std::min(right, other.right)};
    }
    [[nodiscard]] int width() const { return right - left; }
};

/// The gaps between marks that are wider than any blank.
std::vector<WideGap> wideGaps(const TextLine& line) {
    constexpr double least = 1.2;  // of the line's height
    std::vector<WideGap> gaps;
    std::vector<QRect> marks = line.letters;
    marks.insert(marks.end(), line.dots.begin(), line.dots.end());
    std::ranges::sort(marks, {}, [](const QRect& mark) { return mark.left(); });
    int end = marks.front().right();
    for (const QRect& mark : marks) {
        if (mark.left() - end - 1 >= least * line.box.height())
            gaps.push_back({end, mark.left()});
        end = std::max(end, mark.right());
    }
    return gaps;
}

/// The right edges behind which columns end: where lines above and below have a gap, too. What stands in
/// narrow columns of a table is no sentence, and engines fill the gaps of Chinese text with signs.
std::vector<std::vector<int>> columnEnds(const std::vector<TextLine>& lines) {
    constexpr int fewest = 3;     // lines
    constexpr int mostApart = 8;  // heights of a line
    std::vector<std::vector<WideGap>> gaps;
    gaps.reserve(lines.size());
    for (const TextLine& line : lines)
        gaps.push_back(line.isShaded || isCode(line) ? std::vector<WideGap>() : wideGaps(line));
    std::vector<std::vector<int>> ends(lines.size());
    for (size_t i = 0; i < lines.size(); ++i) {
        const int height = lines[i].box.height();
        for (const WideGap& gap : gaps[i]) {
            WideGap common = gap;
            int count = 1;
            for (size_t k = 0; k < lines.size(); ++k) {
                if (k == i || shareRow(lines[i].box, lines[k].box) ||
                    std::abs(lines[i].box.top() - lines[k].box.top()) > mostApart * height)
                    continue;
                const auto same = std::ranges::find_if(
                    gaps[k], [&](const WideGap& other) { return (common & other).width() > height; });
                if (same == gaps[k].end())
                    continue;
                common = common & *same;
                ++count;
            }
            if (count >= fewest)
                ends[i].push_back(gap.left);
        }
    }
    return ends;
}

std::vector<TextLine> labelsOf(const TextLine& row, std::vector<int> ends) {
    if (ends.empty())
        ends = labelEnds(row);
    if (ends.empty())
        ends = textBeforeSmallTime(row);
    const TextLine empty{{}, row.region, row.isShaded, row.kind, row.colour, {}, {}};
    std::vector<TextLine> labels(ends.size() + 1, empty);
    const auto add = [&](const QRect& mark, std::vector<QRect> TextLine::*place) {
        TextLine& label =
            labels[static_cast<size_t>(std::ranges::lower_bound(ends, mark.left()) - ends.begin())];
        (label.*place).push_back(mark);
        label.box |= mark & row.box;
    };
    for (const QRect& letter : row.letters)
        add(letter, &TextLine::letters);
    for (const QRect& dot : row.dots)
        add(dot, &TextLine::dots);
    const bool areLabels =
        std::ranges::none_of(labels, [](const TextLine& label) { return label.letters.empty(); });
    return areLabels ? labels : std::vector{row};
}

}  // namespace

void cutLabelRows(std::vector<TextLine>& lines) {
    std::vector<TextLine> all;
    const std::vector<std::vector<int>> columns = columnEnds(lines);
    for (size_t i = 0; i < lines.size(); ++i)
        if (lines[i].isShaded)
            all.push_back(std::move(lines[i]));
        else
            std::ranges::move(labelsOf(lines[i], columns[i]), std::back_inserter(all));
    lines = std::move(all);
}

}  // namespace tralio
