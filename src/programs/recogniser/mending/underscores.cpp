#include "programs/recogniser/mending/underscores.h"

#include <algorithm>
#include <iterator>

#include "programs/recogniser/lines/low_strokes.h"
#include "programs/recogniser/pixels/boxes.h"

namespace tralio {
namespace {

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
