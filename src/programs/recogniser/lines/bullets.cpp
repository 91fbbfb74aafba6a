#include "programs/recogniser/lines/bullets.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iterator>

#include "programs/recogniser/lines/icon_columns.h"
#include "programs/recogniser/lines/icon_rows.h"
#include "programs/recogniser/lines/low_strokes.h"
#include "programs/recogniser/pixels/boxes.h"

namespace tralio {
namespace {

bool isBullet(const QRect& mark, int base, int letterHeight) {
    const int side = std::max(mark.width(), mark.height());
    return std::abs(mark.width() - mark.height()) * 5 <= side && side * 10 <= letterHeight * 6 &&
        base - mark.bottom() >= std::max(1, letterHeight / 8) && base - mark.top() < letterHeight;
}

/// A sign beside a label is higher than letters and goes beneath them; a numeral stands on their line. Or it
/// is a tick, which is wider than high; two letters that touch are wider still.
bool isIcon(const TextLine& line, const std::vector<QRect>& marks) {
    const QRect first = marks.front();
    std::vector<QRect> letters = line.letters;
    std::erase(letters, first);
    const int base = footOf(letters);
    const auto high = letters.begin() + std::ssize(letters) * 3 / 4;
    std::ranges::nth_element(letters, high, {}, [](const QRect& letter) { return letter.height(); });
    const int height = high->height();
    // What it holds may be a figure in a ring.
    const auto isInside = [&](const QRect& letter) { return letter.left() <= first.right(); };
    const bool isHigh = first.height() * 10 >= height * 14 && first.width() * 2 >= first.height() &&
        first.bottom() - base >= std::max(2, height / 8) && base - first.top() >= height;
    // No letter goes that far beyond the others at both ends.
    const bool isLarge = (letters.size() >= 4 || height >= 8) && first.width() * 10 >= first.height() * 7 &&
        first.height() * 2 >= height * 3 && first.bottom() - base >= 2 && base - first.top() >= height + 1;
    const bool isTick = first.width() * 4 >= first.height() * 5 && first.width() * 2 <= first.height() * 3 &&
        first.height() * 2 >= height;
    // "W" is as wide, and stands like the others.
    const bool isLetter = std::abs(first.bottom() - base) <= 1 &&
        std::ranges::any_of(
            letters, [&](const QRect& letter) { return std::abs(letter.top() - first.top()) <= 1; });
    if ((!isHigh && !isLarge && (!isTick || isLetter)) || std::ranges::any_of(letters, isInside))
        return false;
    int widest = 0;
    int right = first.right();
    int gap = 0;
    for (const QRect& mark : marks) {
        int& space = right == first.right() ? gap : widest;
        space = std::max(space, mark.left() - right - 1);
        right = std::max(right, mark.right());
    }
    return (isLarge && gap * 3 >= height && gap > widest) ||
        (gap * 10 >= height * 7 && gap * 2 >= widest * 3);
}

void setIconAside(TextLine& line) {
    constexpr size_t fewest = 3;
    std::vector<QRect> marks = line.letters;
    marks.insert(marks.end(), line.dots.begin(), line.dots.end());
    if (line.letters.size() < fewest)
        return;
    std::ranges::sort(marks, {}, [](const QRect& mark) { return mark.left(); });
    const QRect first = marks.front();
    const bool isDot = isBullet(first, footOf(line.letters), line.letterHeight()) &&
        marks[1].left() - first.right() > first.width();
    if (!isDot && !isIcon(line, marks))
        return;
    const auto isBeside = [&](const QRect& mark) { return mark.left() > first.right(); };
    const auto isPart = std::not_fn(isBeside);
    std::ranges::copy_if(marks, std::back_inserter(line.unread), isPart);
    std::erase_if(line.letters, isPart);
    std::erase_if(line.dots, isPart);
    if (isDot) {
        line.box.setLeft(marks[1].left());
        return;
    }
    line.box = {};
    for (const QRect& mark : marks)
        if (isBeside(mark))
            line.box |= mark;
}

/// A rule or a caret, or what the side of the picture cut off.
bool isScrap(const TextLine& line, int pictureWidth, int unit) {
    constexpr int leastRule = 16;
    constexpr int narrow = 3;
    const auto [low, high] = std::minmax({line.box.width(), line.box.height()});
    const bool isRule = high >= leastRule * unit && high >= 12 * low;
    const bool isAtSide = line.box.left() == 0 || line.box.right() == pictureWidth - 1;
    return !line.isShaded &&
        ((isRule && line.letters.size() <= 2) ||
            (isAtSide && line.letters.size() == 1 && line.box.width() <= narrow * unit));
}

}  // namespace

void setAsideUnread(std::vector<TextLine>& lines, const MarkShapes& found, int unit) {
    if (lines.size() > 1)
        std::erase_if(lines, [&](const TextLine& line) { return isScrap(line, found.size.width(), unit); });
    setIconColumnsAside(lines, found.drawings, unit);
    for (TextLine& line : lines) {
        if (line.isShaded)
            continue;
        setIconAside(line);
        setKeyMarksAside(line);
    }
    setIconRowsAside(lines, found.drawings, unit);
}

}  // namespace tralio
