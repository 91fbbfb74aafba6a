#include "programs/recogniser/mending/solid_blanks.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace tralio {
namespace {

constexpr double roomAroundSign = 0.05;  // of the pitch

struct Gap {
    int left;
    int right;

    [[nodiscard]] int width() const { return right - left - 1; }
};

bool isHan(QChar c) {
    return c.script() == QChar::Script_Han;
}

bool isSign(QChar c) {
    return c == u'ー' || isHan(c) || c.script() == QChar::Script_Hiragana ||
        c.script() == QChar::Script_Katakana;
}

bool isOfSigns(const ReadLine& line) {
    return std::ranges::all_of(
        line.words,
        [](const ReadWord& word) { return std::all_of(word.text.begin(), word.text.end(), isSign); });
}

/// The gaps that are clearly wider than all others of a line.
std::vector<Gap> wideGaps(const std::vector<QRect>& marks, int height) {
    constexpr double least = 0.25;
    constexpr double clearly = 1.4;
    std::vector<Gap> gaps;
    int end = marks.front().right();
    for (const QRect& mark : marks) {
        if (mark.left() > end + 1)
            gaps.push_back({end, mark.left()});
        end = std::max(end, mark.right());
    }
    int widestOther = 0;
    for (const Gap& gap : gaps)
        if (gap.width() < least * height)
            widestOther = std::max(widestOther, gap.width());
    std::erase_if(gaps,
        [&](const Gap& gap) { return gap.width() < least * height || gap.width() < clearly * widestOther; });
    return gaps;
}

/// Whether signs as wide as most stand at both sides of a gap. Others have room of their own.
bool isBetweenWideSigns(const Gap& gap, const std::vector<QRect>& marks, double pitch) {
    constexpr double reach = 0.7;
    constexpr double least = 0.75;
    int left = gap.left;
    int right = gap.right;
    for (const QRect& mark : marks) {
        if (mark.right() <= gap.left && mark.right() > gap.left - reach * pitch)
            left = std::min(left, mark.left());
        if (mark.left() >= gap.right && mark.left() < gap.right + reach * pitch)
            right = std::max(right, mark.right());
    }
    return gap.left - left + 1 >= least * pitch && right - gap.right + 1 >= least * pitch;
}

/// Before which signs the blanks are, counted from the line's first, if its signs have one pitch but for
/// them.
std::vector<qsizetype> blanksOf(
    const std::vector<QRect>& marks, const std::vector<Gap>& gaps, const QString& signs) {
    constexpr double tolerance = 0.22;
    constexpr double leastBlank = 0.15;
    constexpr double leastBesideSyllable = 0.6;  // such as "ト"
    std::vector<int> widths;
    int left = marks.front().left();
    int right = left;
    for (const QRect& mark : marks)
        right = std::max(right, mark.right());
    int all = 0;
    for (const Gap& gap : gaps) {
        widths.push_back(gap.left - left + 1);
        left = gap.right;
    }
    widths.push_back(right - left + 1);
    for (const int width : widths)
        all += width;
    const double pitch = all / (double(signs.size()) - 2 * roomAroundSign * double(widths.size()));
    std::vector<qsizetype> before;
    qsizetype count = 0;
    for (const int width : widths) {
        const double length = width / pitch + 2 * roomAroundSign;
        if (length < 1 - tolerance || std::abs(length - std::round(length)) > tolerance)
            return {};
        count += std::lround(length);
        before.push_back(count);
    }
    before.pop_back();
    if (count != signs.size())
        return {};
    for (size_t i = 0; i < gaps.size(); ++i) {
        const bool isOfHan = isHan(signs[before[i] - 1]) && isHan(signs[before[i]]);
        const double room = isOfHan ? 2 * roomAroundSign + leastBlank : leastBesideSyllable;
        if (gaps[i].width() < room * pitch || !isBetweenWideSigns(gaps[i], marks, pitch))
            return {};
    }
    return before;
}

/// Makes a word begin at a sign of a line, if none does.
void beginWordAt(ReadLine& line, qsizetype sign, const Gap& gap) {
    auto word = line.words.begin();
    while (sign >= word->text.size())
        sign -= word++->text.size();
    if (sign > 0) {
        ReadWord rest = *word;
        rest.text = word->text.mid(sign);
        word->text.truncate(sign);
        rest.box.setLeft(gap.right);
        word->box.setRight(gap.left + 1);
        word = line.words.insert(std::next(word), std::move(rest));
    }
    word->blanksBefore = 1;
    word->isApart = true;
}

}  // namespace

void writeBlanksBetweenSigns(Reading& reading, const std::vector<TextLine>& lines) {
    constexpr qsizetype fewest = 3;
    for (ReadLine& line : reading.lines) {
        QString signs;
        for (const ReadWord& word : line.words)
            signs += word.text;
        const auto drawn = std::ranges::find_if(
            lines, [&](const TextLine& each) { return shareHeight(line.box, each.box); });
        if (signs.size() < fewest || drawn == lines.end() || drawn->isShaded || drawn->letters.empty() ||
            !isOfSigns(line))
            continue;
        const std::vector<QRect> marks = drawn->marks();
        const std::vector<Gap> gaps = wideGaps(marks, drawn->box.height());
        const std::vector<qsizetype> before = blanksOf(marks, gaps, signs);
        for (size_t i = 0; i < before.size(); ++i)
            beginWordAt(line, before[i], gaps[i]);
    }
}

}  // namespace tralio
