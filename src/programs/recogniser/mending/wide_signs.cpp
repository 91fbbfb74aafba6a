#include "programs/recogniser/mending/wide_signs.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <utility>

namespace tralio {
namespace {

/// Of Chinese or Japanese.
bool isSolidLetter(QChar c) {
    return c.script() == QChar::Script_Han || c.script() == QChar::Script_Hiragana ||
        c.script() == QChar::Script_Katakana;
}

std::optional<QChar> wideOne(QChar narrow) {
    constexpr std::array<std::pair<char16_t, char16_t>, 3> pairs{
        {{u'?', u'？'}, {u'!', u'！'}, {u':', u'：'}}};
    const auto pair = std::ranges::find(pairs, narrow, [](const auto& each) { return QChar(each.first); });
    return pair == pairs.end() ? std::nullopt : std::optional<QChar>(pair->second);
}

/// The room without any mark to the left of a word, in heights of its line.
std::optional<double> roomBefore(
    const ReadWord& word, const QRectF& read, const std::vector<TextLine>& lines) {
    for (const TextLine& line : lines) {
        if (line.isShaded || !shareHeight(read, line.box))
            continue;
        if (line.letters.empty())
            continue;
        // The engines' boxes are off by a few pixels.
        const QRect& first = *std::ranges::min_element(
            line.letters, {}, [&](const QRect& mark) { return std::abs(mark.left() - word.box.left()); });
        std::optional<int> end;
        for (const auto* marks : {&line.letters, &line.dots})
            for (const QRect& mark : *marks)
                if (mark.left() < first.left())
                    end = std::max(end.value_or(mark.right()), mark.right());
        if (end)
            return double(first.left() - *end - 1) / line.box.height();
    }
    return std::nullopt;
}

/// Whether a word's digits go on with a Chinese sign, as those of a date do, which is written without blanks.
bool isCounted(const std::vector<ReadWord>& words, size_t i) {
    const QString& text = words[i].text;
    const auto end = std::ranges::find_if_not(text, [](QChar c) { return c.isDigit(); });
    if (end != text.end())
        return end->script() == QChar::Script_Han;
    return i + 1 < words.size() && words[i + 1].blanksBefore == 0 &&
        words[i + 1].text.front().script() == QChar::Script_Han;
}

}  // namespace

void writeWideSigns(Reading& reading, const std::vector<TextLine>& lines) {
    constexpr double blank = 0.27;
    constexpr double blankBeforeCounted = 0.4;
    constexpr double restOfWideSign = 0.5;
    for (ReadLine& line : reading.lines) {
        for (size_t i = 0; i < line.words.size(); ++i) {
            ReadWord& word = line.words[i];
            const bool isLast = i + 1 == line.words.size();
            QChar before = i > 0 ? line.words[i - 1].text.back() : QChar(u' ');
            for (qsizetype k = 0; k < word.text.size(); before = word.text[k++]) {
                const auto wide = isSolidLetter(before) ? wideOne(word.text[k]) : std::nullopt;
                if (!wide)
                    continue;
                // A colon is written either way.
                const bool isEnd = k + 1 == word.text.size();
                if (word.text[k] == u':' &&
                    (!isEnd || (!isLast && roomBefore(line.words[i + 1], line.box, lines) < restOfWideSign)))
                    continue;
                word.text[k] = *wide;
            }
            if (i == 0 || line.words[i - 1].text.back().script() != QChar::Script_Han ||
                !word.text.front().isDigit())
                continue;
            const std::optional<double> room = roomBefore(word, line.box, lines);
            if (isCounted(line.words, i) && room && *room < blankBeforeCounted)
                word.blanksBefore = 0;
            else if (word.blanksBefore == 0 && room >= blank)
                word.blanksBefore = 1;
        }
    }
}

}  // namespace tralio
