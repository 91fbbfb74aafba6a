#include "programs/recogniser/reading/marks_above.h"

#include <algorithm>

#include "programs/recogniser/pixels/boxes.h"

namespace tralio {
namespace {

/// How many marks stand above the letters of a text; none if it holds other letters than Latin ones.
int marksOf(const QString& text) {
    int marks = 0;
    for (const QChar c : text) {
        const QString parts = QString(c).normalized(QString::NormalizationForm_D);
        const QStringView above = u"\u0300\u0301\u0302\u0303\u0306\u0309\u030a\u030c";
        int own = 0;
        for (const QChar part : parts)
            own += above.contains(part) ? 1 : part == u'\u0308' ? 2 : 0;
        const bool hasDot = parts.front() == u'i' || parts.front() == u'j';
        marks += hasDot ? std::max(own, 1) : own;
    }
    return marks;
}

}  // namespace

int unreadMarks(const ReadWord& word, const QRectF& read, const std::vector<TextLine>& lines) {
    const auto isOther = [](QChar c) { return c.isLetter() && c.script() != QChar::Script_Latin; };
    const auto isLatin = [](QChar c) { return c.isLetter() && c.script() == QChar::Script_Latin; };
    if (std::ranges::any_of(word.text, isOther) || std::ranges::none_of(word.text, isLatin))
        return 0;
    std::ptrdiff_t marks = 0;
    for (const TextLine& line : lines) {
        if (line.isShaded || !shareHeight(read, line.box))
            continue;
        const std::vector<QRect> letters = marksIn(word.box, line.letters);
        const auto isAbove = [&](const QRect& dot) {
            return std::ranges::any_of(
                letters,
                [&](const QRect& letter) {
                    return dot.bottom() < letter.top() && -horizontalGap(dot, letter) * 2 >= dot.width();
                });
        };
        marks += std::ranges::count_if(line.dots, [&](const QRect& dot) {
            return dot.center().x() >= word.box.left() && dot.center().x() <= word.box.right() &&
                isAbove(dot);
        });
    }
    return static_cast<int>(marks) - marksOf(word.text);
}

std::vector<PoorWord> wordsLackingMarks(Reading& reading, const std::vector<TextLine>& lines) {
    std::vector<PoorWord> poor;
    for (ReadLine& line : reading.lines)
        for (ReadWord& word : line.words)
            if (unreadMarks(word, line.box, lines) > 0)
                poor.push_back({&word, word.text});
    return poor;
}

}  // namespace tralio
