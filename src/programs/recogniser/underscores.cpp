#include "programs/recogniser/underscores.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "programs/recogniser/boxes.h"

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

std::vector<QRectF> underscoresOf(const TextLine& line) {
    std::vector<QRectF> underscores;
    const int base = footOf(line.letters);
    for (const QRect& dot : line.dots)
        if (isLow(dot, base) && dot.width() * 10 <= line.letterHeight() * 16 && !isBeneathLetter(dot, line))
            underscores.emplace_back(dot);
    return underscores;
}

/// East Asian letters have strokes like it.
bool mayBeCode(const ReadWord& word, const ReadWord& next) {
    constexpr QChar firstEastAsian = u'\u1100';
    return word.text.back() < firstEastAsian && next.text.front() < firstEastAsian;
}

bool isBetween(const QRectF& mark, const ReadWord& word, const ReadWord& next, double room) {
    return mark.left() >= word.box.center().x() && mark.right() <= next.box.center().x() &&
        mark.left() <= word.box.right() + room && mark.right() >= next.box.left() - room;
}

void join(ReadWord& word, const ReadWord& next) {
    const auto length = static_cast<double>(word.text.size());
    const auto more = static_cast<double>(next.text.size());
    word.confidence = (word.confidence * length + next.confidence * more) / (length + more);
    const bool isThere = word.text.endsWith(u'_') || next.text.startsWith(u'_');
    word.text += isThere ? next.text : u'_' + next.text;
    word.box |= next.box;
}

}  // namespace

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

void restoreUnderscores(Reading& reading, const std::vector<TextLine>& lines) {
    for (ReadLine& read : reading.lines) {
        for (const TextLine& line : lines) {
            const std::vector<QRectF> underscores = !line.isShaded && shareHeight(read.box, line.box)
                ? underscoresOf(line)
                : std::vector<QRectF>();
            const double room = line.letterHeight() / 2.0;
            for (const QRectF& mark : underscores) {
                const auto word =
                    std::ranges::adjacent_find(read.words, [&](const ReadWord& a, const ReadWord& b) {
                        return isBetween(mark, a, b, room) && mayBeCode(a, b);
                    });
                if (word == read.words.end())
                    continue;
                join(*word, *std::next(word));
                read.words.erase(std::next(word));
            }
        }
    }
}

}  // namespace tralio
