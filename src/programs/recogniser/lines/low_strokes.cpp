#include "programs/recogniser/lines/low_strokes.h"

#include <algorithm>
#include <cstdlib>

#include "programs/recogniser/pixels/boxes.h"

namespace tralio {
namespace {

/// Whether a mark lies beneath the line that letters stand on, and is as long and thin as an underscore.
bool isLow(const QRect& dot, int base) {
    return dot.top() > base && dot.width() >= 4 * dot.height();
}

/// Beneath a letter it marks a menu's key.
bool isBeneathLetter(const QRect& dot, const TextLine& line) {
    return std::ranges::any_of(
        line.letters,
        [&](const QRect& letter) {
            return -horizontalGap(letter, dot) * 2 >= std::min(dot.width(), letter.width());
        });
}

}  // namespace

std::vector<QRectF> underscoresOf(const TextLine& line) {
    std::vector<QRectF> underscores;
    const int base = footOf(line.letters);
    for (const QRect& dot : line.dots)
        if (isLow(dot, base) && dot.width() * 10 <= line.letterHeight() * 16 && !isBeneathLetter(dot, line))
            underscores.emplace_back(dot);
    return underscores;
}

void setKeyMarksAside(TextLine& line) {
    const int base = footOf(line.letters);
    const auto isKeyMark = [&](const QRect& dot) { return isLow(dot, base) && isBeneathLetter(dot, line); };
    const auto standsOnLine = [base](const QRect& letter) { return std::abs(letter.bottom() - base) <= 1; };
    // In Korean there are strokes like it. A label has one key.
    if (std::ranges::count_if(line.letters, standsOnLine) * 10 < std::ssize(line.letters) * 6 ||
        std::ranges::count_if(line.dots, isKeyMark) != 1)
        return;
    const auto mark = std::ranges::find_if(line.dots, isKeyMark);
    // Beneath the arrow of an icon there is a tray.
    const QRect& first = line.letters.front();
    if (mark->left() <= first.left() && line.letters.size() > 1 &&
        horizontalGap(first, line.letters[1]) * 10 >= line.letterHeight() * 7)
        return;
    line.unread.push_back(*mark);
    line.dots.erase(mark);
}

}  // namespace tralio
