#include "programs/recogniser/reading/is_text.h"

#include <algorithm>

namespace tralio {
namespace {

/// Photographs are full of shapes like letters: few of them must be read well to count.
bool isTextOfPhotograph(const ReadLine& line) {
    constexpr double sure = 80;
    constexpr double verySure = 93;
    constexpr qsizetype someLetters = 4;
    constexpr qsizetype fewLetters = 2;
    const QString text = line.text();
    const auto letters =
        std::count_if(text.begin(), text.end(), [](QChar c) { return c.isLetterOrNumber(); });
    return letters * 10 >= text.size() * 6 &&
        ((letters >= someLetters && line.confidence() >= sure) ||
            (letters >= fewLetters && line.confidence() >= verySure));
}

/// The icons of a toolbar are read as short words, many of them without a letter.
bool isRowOfSigns(const ReadLine& line) {
    constexpr std::ptrdiff_t fewest = 4;
    constexpr std::ptrdiff_t fewestSigns = 3;
    const auto isShort = [](const ReadWord& word) { return word.text.size() <= 2; };
    const auto isSign = [](const ReadWord& word) {
        return std::ranges::none_of(word.text, [](QChar c) { return c.isLetterOrNumber(); });
    };
    return std::ssize(line.words) >= fewest && std::ranges::count_if(line.words, isSign) >= fewestSigns &&
        std::ranges::count_if(line.words, isShort) * 3 >= std::ssize(line.words) * 2;
}

}  // namespace

bool isText(const ReadLine& line, bool isInPhotograph) {
    // In code a line of signs may be read ill but for a word.
    const auto isSure = [](const ReadWord& word) {
        constexpr double sure = 90;
        return word.confidence >= sure &&
            std::ranges::count_if(word.text, [](QChar c) { return c.isLetter(); }) >= 3;
    };
    if (isInPhotograph)
        return isTextOfPhotograph(line);
    constexpr double signsFrom = 65;
    return line.confidence() >= (isRowOfSigns(line) ? signsFrom : textFrom) ||
        std::ranges::any_of(line.words, isSure);
}

}  // namespace tralio
