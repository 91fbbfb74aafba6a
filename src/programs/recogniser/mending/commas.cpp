#include "programs/recogniser/mending/commas.h"

#include <algorithm>

#include "programs/recogniser/pixels/boxes.h"

namespace tralio {
namespace {

/// For each comma between letters, whether there is a blank behind it. In type of even widths there is as
/// much room before it.
std::vector<bool> blanksBehind(const std::vector<QRect>& marks, const TextLine& line) {
    constexpr double blank = 0.3;
    const int foot = footOf(line.letters);
    std::vector<bool> blanks;
    for (size_t i = 1; i + 1 < marks.size(); ++i) {
        const QRect& comma = marks[i];
        if (comma.bottom() <= foot || comma.top() <= line.box.center().y())
            continue;
        const int before = horizontalGap(marks[i - 1], comma);
        const int behind = horizontalGap(comma, marks[i + 1]);
        blanks.push_back(behind >= blank * line.box.height() && behind > 2 * std::max(0, before));
    }
    return blanks;
}

void mend(QString& text, const std::vector<bool>& blanks) {
    const auto isBetweenLetters = [&](qsizetype i) {
        return text[i] == u',' && i > 0 && i + 1 < text.size() && text[i - 1].isLetter() &&
            text[i + 1].isLetter();
    };
    if (text.count(u',') != std::ssize(blanks))
        return;
    size_t comma = 0;
    for (qsizetype i = 0; i < text.size(); ++i)
        if (text[i] == u',' && blanks[comma++] && isBetweenLetters(i))
            text.insert(i + 1, u' ');
}

}  // namespace

void writeBlanksBehindCommas(Reading& reading, const std::vector<TextLine>& lines) {
    for (ReadLine& read : reading.lines)
        for (ReadWord& word : read.words)
            for (const TextLine& line : lines)
                if (!line.isShaded && word.text.contains(u',') && shareHeight(read.box, line.box)) {
                    std::vector<QRect> marks = line.letters;
                    marks.insert(marks.end(), line.dots.begin(), line.dots.end());
                    mend(word.text, blanksBehind(marksIn(word.box, marks), line));
                }
}

}  // namespace tralio
