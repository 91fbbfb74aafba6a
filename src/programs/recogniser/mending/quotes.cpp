#include "programs/recogniser/mending/quotes.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>

#include "programs/recogniser/mending/mark_drawing.h"
#include "programs/recogniser/pixels/boxes.h"

namespace tralio {
namespace {

constexpr QStringView singleSigns = u"'’‘";
constexpr QStringView doubleSigns = u"\"”“";

bool isQuote(QChar c) {
    return singleSigns.contains(c) || doubleSigns.contains(c);
}

/// One sign: a mark, or two side by side.
using Sign = std::vector<QRect>;

/// The signs at the upper edge of a line: with nothing beneath them.
std::vector<Sign> highSigns(const QRectF& read, const TextLine& line) {
    std::vector<QRect> marks;
    const double reach = line.box.height() / 4.0;
    const auto isHigh = [&](const QRect& mark) {
        const auto isBeneath = [&](const QRect& other) {
            return other.bottom() > mark.bottom() + 1 && -horizontalGap(mark, other) * 2 >= mark.width();
        };
        return mark.center().x() >= read.left() - reach && mark.center().x() <= read.right() + reach &&
            mark.bottom() <= line.box.center().y() + 1 && mark.width() <= mark.height() * 2 &&
            std::ranges::none_of(line.letters, isBeneath) && std::ranges::none_of(line.dots, isBeneath);
    };
    for (const auto* all : {&line.letters, &line.dots})
        std::ranges::copy_if(*all, std::back_inserter(marks), isHigh);
    std::ranges::sort(marks, {}, [](const QRect& mark) { return mark.left(); });
    std::vector<Sign> signs;
    for (const QRect& mark : marks) {
        const bool isSecond = !signs.empty() && signs.back().size() == 1 && shareRow(mark, signs.back()[0]) &&
            horizontalGap(mark, signs.back()[0]) * 2 <= mark.height();
        if (isSecond)
            signs.back().push_back(mark);
        else
            signs.push_back({mark});
    }
    return signs;
}

/// Whether a sign is curly, where that is plain.
std::optional<bool> isCurly(const Sign& sign, const BlockPicture& picture) {
    constexpr double curlyFrom = 0.1;
    constexpr double curlyIfSmall = 0.16;
    constexpr int leastPlain = 5;
    constexpr double straightTo = 0.05;
    constexpr int leastHeight = 3;
    constexpr int leastStraight = 4;
    double bend = 0;
    int height = sign[0].height();
    for (const QRect& mark : sign) {
        height = std::min(height, mark.height());
        bend += drawingOf(mark, picture).bend / static_cast<double>(sign.size());
    }
    if (bend >= (height < leastPlain ? curlyIfSmall : curlyFrom) && height >= leastHeight)
        return true;
    return bend <= straightTo && height >= leastStraight ? std::optional(false) : std::nullopt;
}

/// A sign as it was read: the place of a letter.
struct Place {
    ReadWord* word;
    qsizetype at;
};

std::vector<Place> quotesIn(std::span<ReadWord> words) {
    std::vector<Place> places;
    for (ReadWord& word : words)
        for (qsizetype i = 0; i < word.text.size(); ++i)
            if (isQuote(word.text[i]))
                places.push_back({&word, i});
    return places;
}

void write(const Place& place, const Sign& sign, bool curly, bool isLowOpen) {
    QString& text = place.word->text;
    QChar& c = text[place.at];
    const auto isLetterAt = [&](qsizetype i) {
        return i >= 0 && i < text.size() && text[i].isLetterOrNumber();
    };
    const bool wasDouble = doubleSigns.contains(c);
    const bool isDouble = sign.size() == 2 || wasDouble;  // its halves may touch
    const bool wasStraight = c == u'\'' || c == u'"';
    if (wasStraight && place.at > 0 && text[place.at - 1].isDigit() && !isLetterAt(place.at + 1))
        return;  // feet and inches lean, and are straight
    const bool opens =
        wasStraight ? !isLetterAt(place.at - 1) && isLetterAt(place.at + 1) : c == u'“' || c == u'‘';
    const QStringView signs = isDouble ? doubleSigns : singleSigns;
    c = signs[!curly ? 0 : opens || (wasStraight && isDouble && isLowOpen) ? 2 : 1];
}

void writeAll(const std::vector<Place>& places, const std::vector<Sign>& signs, const BlockPicture& picture,
    bool isLowOpen) {
    for (size_t i = 0; i < signs.size(); ++i)
        if (const std::optional<bool> curly = isCurly(signs[i], picture))
            write(places[i], signs[i], *curly, isLowOpen);
}

qsizetype marksOf(QChar letter) {
    return QString(letter).normalized(QString::NormalizationForm_D).size() - 1;
}

/// Writes an apostrophe between letters that was not read, if every letter was.
void restoreApostrophe(ReadWord& word, const Sign& sign, const TextLine& line, const BlockPicture& picture) {
    const std::vector<QRect> letters = marksIn(word.box, line.letters);
    const auto isLatin = [](QChar c) { return c.isLetter() && c.script() == QChar::Script_Latin; };
    const QRect& mark = sign[0];
    const std::optional<bool> curly = isCurly(sign, picture);
    const auto at = std::ranges::count_if(
        letters, [&](const QRect& letter) { return letter.right() < mark.left(); });
    const auto behind =
        std::ranges::count_if(letters, [&](const QRect& letter) { return letter.left() > mark.right(); });
    // A hat has its accent at its side.
    const auto next = std::ranges::find_if(
        letters, [&](const QRect& letter) { return letter.left() > mark.right(); });
    const auto isBesideIt = [&](const QRect& dot) {
        return dot.left() > mark.right() && dot.left() <= next->right() && dot.bottom() < next->top();
    };
    if (next == letters.end() || std::ranges::any_of(line.dots, isBesideIt))
        return;
    // The dot of an "i" is no higher than wide.
    const bool isApostrophe = curly && sign.size() == 1 && mark.height() > mark.width();
    if (!isApostrophe || at == 0 || behind == 0 || at + behind != word.text.size() ||
        !std::ranges::all_of(word.text, isLatin))
        return;
    // "d’a" is taken for "đa". The horn of an "Ư" is none, nor is the grave beside the hat of an "ề".
    if (word.text[at - 1] == u'đ')
        word.text[at - 1] = u'd';
    else if (word.text[at - 1] >= u'\u0080' || marksOf(word.text[at]) > 1)
        return;
    word.text.insert(at, *curly ? u'’' : u'\'');
}

/// Whether a sign stands in a word's box, or no farther beside it than that.
bool isIn(const ReadWord& word, const Sign& sign, double beside = 1) {
    const int middle = (sign.front().left() + sign.back().right()) / 2;
    return middle >= word.box.left() - beside && middle <= word.box.right() + beside;
}

/// Whether the signs are just those that were read.
bool areThose(const std::vector<Sign>& signs, const std::vector<Place>& places, double beside) {
    return std::ranges::equal(
        signs, places, [&](const Sign& sign, const Place& place) { return isIn(*place.word, sign, beside); });
}

}  // namespace

void tellQuotes(Reading& reading, const std::vector<TextLine>& lines, const BlockPicture& picture) {
    for (ReadLine& read : reading.lines) {
        for (const TextLine& line : lines) {
            if (line.isShaded || !shareHeight(read.box, line.box))
                continue;
            const std::vector<Sign> signs = highSigns(read.box, line);
            if (signs.empty() || isSlanted(line, picture))
                continue;
            const bool isLowOpen = read.text().contains(u'„');
            const std::vector<Place> places = quotesIn(read.words);
            if (areThose(signs, places, line.box.height())) {
                writeAll(places, signs, picture, isLowOpen);
                continue;
            }
            for (ReadWord& word : read.words) {
                const std::vector<Place> itsPlaces = quotesIn({&word, 1});
                std::vector<Sign> own;
                std::ranges::copy_if(
                    signs, std::back_inserter(own), [&](const Sign& sign) { return isIn(word, sign); });
                if (own.size() == itsPlaces.size())
                    writeAll(itsPlaces, own, picture, isLowOpen);
                else if (itsPlaces.empty() && own.size() == 1)
                    restoreApostrophe(word, own[0], line, picture);
            }
        }
    }
}

}  // namespace tralio
