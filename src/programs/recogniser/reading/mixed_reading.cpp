#include "programs/recogniser/reading/mixed_reading.h"

#include <algorithm>
#include <iterator>
#include <numeric>

#include "programs/recogniser/reading/is_text.h"
#include "programs/recogniser/reading/prices.h"

namespace tralio {
namespace {

/// Whether a word is in that script, and no less than a name or a few signs.
bool isPlainly(const ReadWord& word, ScriptKind script) {
    constexpr qsizetype fewestLatin = 2;
    qsizetype latin = 0;
    qsizetype others = 0;
    for (const QChar c : word.text)
        if (c.isLetter())
            ++(c.script() == QChar::Script_Latin ? latin : others);
    return script == ScriptKind::latin ? latin >= fewestLatin && others == 0 : others > 0 && latin == 0;
}

/// Letters of another script that Latin ones are taken for.
constexpr QStringView lookAlikes = u"АБВЕЗКМНОРСТУХЬЅІЈагезиопрсухьѕіј";
/// The same where they are not read well: "name" becomes "пате".
constexpr QStringView poorLookAlikes = u"ГПДИЛЯбвдклмтя";
constexpr double well = 92;

}  // namespace

bool mayBeLatin(const QString& text, double confidence) {
    return std::ranges::all_of(
        text,
        [&](QChar c) {
            return !c.isLetter() || c.script() == QChar::Script_Latin || lookAlikes.contains(c) ||
                (confidence < well && poorLookAlikes.contains(c));
        });
}

namespace {

/// Whether it may as well be code, a price or a look-alike that an engine without Latin letters makes do
/// with.
bool isDoubtful(const ReadWord& word) {
    const auto isNoPartOfWord = [](QChar c) {
        return c.isDigit() || c.isSymbol() || c.category() == QChar::Punctuation_Connector || c == u'\\';
    };
    return mayBeLatin(word.text, word.confidence) || std::ranges::any_of(word.text, isNoPartOfWord);
}

/// Whether lines are in another script: beside Latin letters, with some that are beyond doubt.
bool isOfOtherScript(const Reading& reading) {
    constexpr qsizetype fewest = 2;
    constexpr qsizetype oneIn = 6;
    qsizetype sure = 0;
    qsizetype letters = 0;
    bool isMixed = false;
    for (const ReadLine& line : reading.lines) {
        letters += std::ranges::count_if(
            line.text(), [](QChar c) { return c.isLetter(); });
        const auto isLatin = [](QChar c) { return c.script() == QChar::Script_Latin; };
        isMixed = isMixed || mayBeLatin(line.text(), line.confidence()) ||
            std::ranges::any_of(line.text(), isLatin);
        for (const ReadWord& word : line.words)
            if (isPlainly(word, ScriptKind::other) && !isDoubtful(word))
                sure += std::ranges::count_if(word.text, [](QChar c) { return c.isLetter(); });
    }
    return reading.holdsOtherScript() && (!isMixed || (sure >= fewest && sure * oneIn >= letters));
}

bool isBeneath(const ReadWord& word, const ReadWord& other) {
    const double middle = other.box.center().x();
    return middle >= word.box.left() && middle <= word.box.right();
}

/// Whether other words of its line stand in its box, which tells nothing then.
bool isBoxWrong(const ReadLine& line, const ReadWord& word) {
    return std::ranges::count_if(
               line.words, [&](const ReadWord& other) { return isBeneath(word, other); }) > 1;
}

/// Puts a word in the place of what was read in its box, if that was read with much less confidence.
void replaceBeneath(ReadLine& line, const ReadWord& word) {
    constexpr double sure = 80;
    constexpr double margin = 10;
    constexpr double unread = 30;
    const auto isUnder = [&word](const ReadWord& other) { return isBeneath(word, other); };
    const auto first = std::find_if(line.words.begin(), line.words.end(), isUnder);
    const auto last = std::find_if_not(first, line.words.end(), isUnder);
    if (first == last)
        return;
    ReadLine beneath{{first, last}, {}};
    const QRectF all = std::accumulate(first, last, QRectF(),
        [](const QRectF& box, const ReadWord& other) { return box.united(other.box); });
    const bool isSameStretch = all.width() <= 1.4 * word.box.width();
    if (!isSameStretch || beneath.confidence() + margin > word.confidence ||
        (word.confidence < sure && beneath.confidence() > unread))
        return;
    if (isPrice(beneath.text()))
        return;
    const int blanks = first->blanksBefore;
    *first = word;
    first->blanksBefore = blanks;
    line.words.erase(std::next(first), last);
}

/// What two engines read alike is text. Another look at it may still show more.
void confirm(Reading& reading, const Reading& other) {
    constexpr double enough = 60;
    const auto signsOf = [](const Reading& lines) {
        QString signs;
        for (const ReadLine& line : lines.lines)
            signs += line.text().remove(u' ');
        return signs;
    };
    if (reading.confidence() >= enough || other.confidence() < enough || signsOf(reading) != signsOf(other))
        return;
    for (ReadLine& line : reading.lines)
        for (ReadWord& word : line.words)
            word.confidence = std::max(word.confidence, enough);
}

}  // namespace

void adoptWords(Reading& reading, const Reading& other, ScriptKind script) {
    const auto isOfScript = [&](const ReadWord& word) { return isPlainly(word, script); };
    const auto isBeyondDoubt = [&](const ReadWord& word) { return isOfScript(word) && !isDoubtful(word); };
    const auto adopt = [&](auto isWanted, auto mayHold) {
        for (const ReadLine& otherLine : other.lines)
            for (const ReadWord& word : otherLine.words)
                for (ReadLine& line : reading.lines)
                    if (isWanted(word) && !isBoxWrong(otherLine, word) &&
                        shareHeight(line.box, otherLine.box) && mayHold(line))
                        replaceBeneath(line, word);
    };
    if (script == ScriptKind::latin) {
        adopt(isOfScript, [](const ReadLine&) { return true; });
        return;
    }
    adopt(
        isBeyondDoubt, [](const ReadLine&) { return true; });
    adopt(isOfScript, [&](const ReadLine& line) { return std::ranges::any_of(line.words, isBeyondDoubt); });
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
        // The sign of a currency is easily taken for one of another script.
        const bool isPriced = !group.first.lines.empty() &&
            std::ranges::all_of(group.first.lines, [](const ReadLine& line) { return isPrice(line.text()); });
        const bool secondIsBetter = !isPriced &&
            (group.first.lines.empty() || isOfOtherScript(group.second)) &&
            group.second.isAsLongAs(group.first) &&
            group.second.confidence() >= group.first.confidence() + margin;
        if (!secondIsBetter)
            confirm(group.first, group.second);
        std::vector<ReadLine>& lines = secondIsBetter ? group.second.lines : group.first.lines;
        best.lines.insert(
            best.lines.end(), std::move_iterator(lines.begin()), std::move_iterator(lines.end()));
    }
    return best;
}

void addMissingLines(Reading& reading, const Reading& other, bool isInPhotograph) {
    std::vector<ReadLine>& lines = reading.lines;
    std::vector<ReadLine> missing;
    std::ranges::copy_if(other.lines, std::back_inserter(missing), [&](const ReadLine& line) {
        return isText(line, isInPhotograph) && std::ranges::none_of(lines, [&](const ReadLine& seen) {
            return shareHeight(seen.box, line.box);
        });
    });
    lines.insert(lines.end(), missing.begin(), missing.end());
    std::ranges::stable_sort(lines, {}, [](const ReadLine& line) { return line.box.top(); });
}

}  // namespace tralio
