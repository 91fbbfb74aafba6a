#include "programs/recogniser/mending/thin_letters.h"

#include <algorithm>
#include <cmath>

#include "programs/recogniser/pixels/boxes.h"

namespace tralio {

using namespace Qt::StringLiterals;

namespace {

/// Too narrow for an "L".
bool isStroke(const QRect& mark) {
    return mark.width() * 3 < mark.height();
}

/// The first mark of a letter's height in the word.
const QRect* firstIn(const QRectF& word, const std::vector<QRect>& letters) {
    const auto first = std::ranges::find_if(
        letters, [&](const QRect& letter) { return word.contains(QRectF(letter).center()); });
    return first == letters.end() ? nullptr : &*first;
}

/// No key's name ends in an "i": one without a dot is the "l" of "Ctrl".
void mendKeyNames(ReadWord& word, const std::vector<QRect>& dots) {
    QString& text = word.text;
    if (!text.front().isUpper())
        return;
    const double width = word.box.width() / static_cast<double>(text.size());
    for (qsizetype i = text.indexOf(u"i+"_s); i > 1; i = text.indexOf(u"i+"_s, i + 1)) {
        const double middle = word.box.left() + width * (static_cast<double>(i) + 0.5);
        const auto isDot = [&](const QRect& dot) {
            return std::abs(dot.center().x() - middle) <= 2 * width &&
                dot.center().y() < word.box.center().y();
        };
        if (text[i - 1].isLower() && std::ranges::none_of(dots, isDot))
            text[i] = u'l';
    }
}

/// The keys of a shortcut are written as capitals.
void mendShortcut(QString& text) {
    const bool endsInStroke = text.endsWith(u"+l"_s) || text.endsWith(u"+|"_s);
    if (endsInStroke && text.size() > 3 && text[0].isUpper() && text[1].isLower())
        text.back() = u'I';
}

void mend(ReadWord& word, const TextLine& line, bool isUnit) {
    QString& text = word.text;
    mendShortcut(text);
    mendKeyNames(word, line.dots);
    const QRect* const first = firstIn(word.box, line.letters);
    if (!first || !isStroke(*first))
        return;
    if (text.size() > 1 && text[0] == u'L' && text[1].isLower())
        text[0] = u'l';
    // What is no letter goes below the letters' feet.
    constexpr size_t fewest = 4;
    if (line.letters.size() < fewest || first->bottom() > footOf(line.letters))
        return;
    if (text == u"|")
        text = isUnit ? u'l' : u'I';
    const auto isApostrophe = [&](const QRect& dot) {
        return word.box.contains(QRectF(dot).center()) && dot.bottom() < first->center().y();
    };
    // A long one is taken for a letter.
    if (text == u"[II" &&
        (std::ranges::any_of(line.dots, isApostrophe) || std::ranges::any_of(line.letters, isApostrophe)))
        text = u"I’ll"_s;
}

}  // namespace

void mendThinLetters(Reading& reading, const std::vector<TextLine>& lines) {
    for (ReadLine& read : reading.lines)
        for (size_t i = 0; i < read.words.size(); ++i)
            for (const TextLine& line : lines)
                if (!line.isShaded && shareHeight(read.box, line.box))
                    mend(read.words[i], line, i > 0 && read.words[i - 1].text.back().isDigit());
}

}  // namespace tralio
