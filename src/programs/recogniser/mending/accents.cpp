#include "programs/recogniser/mending/accents.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "programs/recogniser/mending/mark_drawing.h"
#include "programs/recogniser/pixels/boxes.h"

namespace tralio {
namespace {

enum class Accent { dot, acute, grave, other };

Accent accentOf(const QRect& mark, const BlockPicture& picture) {
    constexpr double leanOfStroke = 0.45;
    constexpr double bendOfStroke = 0.2;
    constexpr double leanOfDot = 0.07;
    constexpr double bendOfDot = 0.04;
    const Drawing drawing = drawingOf(mark, picture);
    const bool isSteep = std::abs(drawing.lean) >= leanOfStroke && drawing.bend >= bendOfStroke;
    if (isSteep && mark.width() < 2 * mark.height())
        return drawing.lean < 0 ? Accent::acute : Accent::grave;
    const bool isRound = mark.width() <= mark.height() + 1 && mark.height() <= mark.width() + 1;
    const bool isEven = std::abs(drawing.lean) <= leanOfDot && drawing.bend <= bendOfDot;
    return isRound && isEven ? Accent::dot : Accent::other;
}

/// A letter with that accent, if it was read with a mark above it. A circumflex may have another mark at its
/// side, and above a letter that was read without any there may be noise.
QChar accented(QChar c, Accent accent) {
    constexpr QStringView strokes = u"\u0300\u0301";
    const QString parts = QString(c).normalized(QString::NormalizationForm_D);
    const bool hasStroke = parts.size() == 2 && strokes.contains(parts[1]);
    const bool isOpen = hasStroke || c == u'i' || (parts.size() == 2 && parts[1] == u'\u0308');
    if (!isOpen || !QStringView(u"aeiouAEOU").contains(parts.front()) || accent == Accent::other)
        return c;
    if (accent == Accent::dot)
        return hasStroke && parts.front() == u'i' ? QChar(u'i') : c;
    const QChar mark = strokes[accent == Accent::acute ? 1 : 0];
    return (QString(parts.front()) + mark).normalized(QString::NormalizationForm_C).front();
}

void mend(ReadWord& word, const TextLine& line, const BlockPicture& picture) {
    const std::vector<QRect> letters = marksIn(word.box, line.letters);
    const auto isSmall = [](QChar c) { return QStringView(u".,:;'’‘\"“”-–·…").contains(c); };
    if (std::ssize(letters) != std::ranges::count_if(word.text, [&](QChar c) { return !isSmall(c); }))
        return;
    auto letter = letters.begin();
    for (QChar& c : word.text) {
        if (isSmall(c))
            continue;
        const QRect& box = *letter++;
        // What is nearer to its side is of its neighbour.
        const auto isAbove = [&](const QRect& dot) {
            return dot.bottom() < box.top() && dot.bottom() >= line.box.top() &&
                std::abs(dot.center().x() - box.center().x()) * 4 <= std::max(box.width(), dot.width());
        };
        if (std::ranges::count_if(line.dots, isAbove) == 1)
            c = accented(c, accentOf(*std::ranges::find_if(line.dots, isAbove), picture));
    }
}

}  // namespace

void tellAccents(Reading& reading, const std::vector<TextLine>& lines, const BlockPicture& picture) {
    for (ReadLine& read : reading.lines)
        for (const TextLine& line : lines) {
            if (line.isShaded || !shareHeight(read.box, line.box) || isSlanted(line, picture))
                continue;
            for (ReadWord& word : read.words)
                mend(word, line, picture);
        }
}

}  // namespace tralio
