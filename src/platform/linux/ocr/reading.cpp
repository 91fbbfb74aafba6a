#include "platform/linux/ocr/reading.h"

#include <algorithm>
#include <iterator>

namespace tralio {
namespace {

qsizetype letterCount(const QString& text) {
    return std::count_if(text.begin(), text.end(), [](QChar c) { return !c.isLowSurrogate(); });
}

/// The sum of confidences by length, and of lengths.
struct Weighing {
    double sum = 0;
    double weight = 0;

    void add(const ReadLine& line) {
        for (const ReadWord& word : line.words) {
            const auto length = static_cast<double>(letterCount(word.text));
            sum += word.confidence * length;
            weight += length;
        }
    }
    [[nodiscard]] double mean() const { return weight > 0 ? sum / weight : 0; }
};

bool isPunctuation(const QString& text) {
    return std::none_of(text.begin(), text.end(),
                        [](QChar c) { return c.isLetterOrNumber() || c.isSurrogate(); });
}

bool isDirt(const ReadWord& word) {
    constexpr double leastForPunctuation = 75;
    return word.confidence < leastForPunctuation && isPunctuation(word.text);
}

bool isDirt(const ReadLine& line) {
    constexpr double leastForShortLines = 45;
    constexpr qsizetype shortLine = 4;
    return line.words.empty() ||
           (letterCount(line.text()) <= shortLine && line.confidence() < leastForShortLines);
}

/// Chinese and Japanese put no blanks between words; what engines report there is the room of full-width
/// punctuation.
bool isWrittenSolid(QChar c) {
    return (c >= u'\u3000' && c <= u'\u30ff') || (c >= u'\u3400' && c <= u'\u9fff') ||
           (c >= u'\uff01' && c <= u'\uff60');
}

/// Whether two lines stand at the same height, mostly.
bool shareHeight(const QRectF& a, const QRectF& b) {
    const double shared = std::min(a.bottom(), b.bottom()) - std::max(a.top(), b.top());
    return shared > 0.5 * std::min(a.height(), b.height());
}

}  // namespace

QString ReadLine::text() const {
    QString text;
    for (const ReadWord& word : words) {
        if (!text.isEmpty() && !(isWrittenSolid(text.back()) && isWrittenSolid(word.text.front())))
            text += QString(word.blanksBefore, u' ');
        text += word.text;
    }
    return text;
}

double ReadLine::confidence() const {
    Weighing weighing;
    weighing.add(*this);
    return weighing.mean();
}

double Reading::confidence() const {
    Weighing weighing;
    for (const ReadLine& line : lines)
        weighing.add(line);
    return weighing.mean();
}

double Reading::weakestLine() const {
    constexpr double leastShape = 3;  // shorter ones are icons as often as not
    double weakest = confidence();
    for (const ReadLine& line : lines) {
        if (line.box.width() >= leastShape * line.box.height())
            weakest = std::min(weakest, line.confidence());
    }
    return weakest;
}

bool Reading::isBrokenRow() const {
    return lines.size() > 1 && std::all_of(lines.begin() + 1, lines.end(), [this](const ReadLine& line) {
               return shareHeight(lines.front().box, line.box);
           });
}

bool Reading::looksVietnamese() const {
    constexpr QStringView lettersOfItsOwn = u"ăđơưĂĐƠƯ";
    qsizetype letters = 0;
    qsizetype vietnamese = 0;
    for (const ReadLine& line : lines) {
        for (const QChar c : line.text()) {
            letters += c.isLetter() ? 1 : 0;
            const bool hasToneAndShape = c >= u'\u1ea0' && c <= u'\u1ef9';
            vietnamese += hasToneAndShape || lettersOfItsOwn.contains(c) ? 1 : 0;
        }
    }
    constexpr qsizetype oneIn = 20;
    return vietnamese * oneIn >= letters && vietnamese > 1;
}

void Reading::dropDirt() {
    for (ReadLine& line : lines) {
        while (!line.words.empty() && isDirt(line.words.back()))
            line.words.pop_back();
        const auto first = std::find_if(line.words.begin(), line.words.end(),
                                        [](const ReadWord& word) { return !isDirt(word); });
        line.words.erase(line.words.begin(), first);
    }
    std::erase_if(lines, [](const ReadLine& line) { return isDirt(line); });
}

Reading bestLines(const Reading& first, const Reading& second, double margin) {
    // Two readings may cut one stretch of the image into different numbers of lines; what overlaps is chosen
    // together, so that nothing is read twice or lost.
    struct Group {
        double top;
        double bottom;
        Reading first;
        Reading second;
    };
    std::vector<Group> groups;
    const auto add = [&groups](const ReadLine& line, Reading Group::*side) {
        Group merged{line.box.top(), line.box.bottom(), {}, {}};
        (merged.*side).lines.push_back(line);
        for (auto group = groups.begin(); group != groups.end();) {
            const QRectF stretch(line.box.left(), group->top, 1, group->bottom - group->top);
            if (!shareHeight(stretch, line.box)) {
                ++group;
                continue;
            }
            merged.top = std::min(merged.top, group->top);
            merged.bottom = std::max(merged.bottom, group->bottom);
            for (const auto part : {&Group::first, &Group::second}) {
                auto& lines = ((*group).*part).lines;
                auto& all = (merged.*part).lines;
                all.insert(all.begin(), lines.begin(), lines.end());
            }
            group = groups.erase(group);
        }
        groups.push_back(std::move(merged));
    };
    for (const ReadLine& line : first.lines)
        add(line, &Group::first);
    for (const ReadLine& line : second.lines)
        add(line, &Group::second);
    std::sort(groups.begin(), groups.end(), [](const Group& a, const Group& b) { return a.top < b.top; });

    Reading best;
    for (Group& group : groups) {
        const bool secondIsBetter = group.second.confidence() >= group.first.confidence() + margin;
        std::vector<ReadLine>& lines = secondIsBetter ? group.second.lines : group.first.lines;
        best.lines.insert(best.lines.end(), std::move_iterator(lines.begin()),
                          std::move_iterator(lines.end()));
    }
    return best;
}

}  // namespace tralio
