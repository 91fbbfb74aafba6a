#include "programs/recogniser/reading/reading.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <memory>
#include <numeric>

#include "programs/recogniser/reading/letter_marks.h"

namespace tralio {

using namespace Qt::StringLiterals;

namespace {

qsizetype letterCount(const QString& text) {
    return std::count_if(
        text.begin(), text.end(), [](QChar c) { return !c.isLowSurrogate(); });
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

/// How much room its letters and digits take. Those of East Asia are as wide as two.
qsizetype extentOf(const Reading& reading) {
    constexpr QChar firstWide = u'\u1100';
    qsizetype extent = 0;
    for (const ReadLine& line : reading.lines)
        for (const QChar c : line.text())
            extent += !c.isLetterOrNumber() ? 0 : c >= firstWide ? 2 : 1;
    return extent;
}

bool isPunctuation(const QString& text) {
    return std::none_of(
        text.begin(), text.end(), [](QChar c) { return c.isLetterOrNumber() || c.isSurrogate(); });
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

/// Whether a mark of Chinese and Japanese has the room of a blank of its own.
bool isWideMark(QChar c) {
    return QStringView(u"、。，：；？！").contains(c);
}

/// Letters that only Vietnamese writes, and all letters.
struct VietnameseShare {
    qsizetype own = 0;
    qsizetype letters = 0;

    explicit VietnameseShare(const Reading& reading) {
        constexpr QStringView lettersOfItsOwn = u"ăđơưĂĐƠƯ";
        for (const ReadLine& line : reading.lines) {
            for (const QChar c : line.text()) {
                letters += c.isLetter() ? 1 : 0;
                const bool hasToneAndShape = c >= u'\u1ea0' && c <= u'\u1ef9';
                own += hasToneAndShape || lettersOfItsOwn.contains(c) ? 1 : 0;
            }
        }
    }

    [[nodiscard]] bool isNoMistake() const {
        constexpr qsizetype oneIn = 20;
        return own > 0 && own * oneIn >= letters;
    }
};

/// Whether it may be a Vietnamese word that was taken for an English one.
bool isSuspect(const ReadWord& word) {
    const auto canBearMark = [](QChar c) { return QStringView(u"aeiouydAEIOUYD").contains(c); };
    return word.pack == u"eng" && std::any_of(word.text.begin(), word.text.end(), canBearMark);
}

bool holdsSuspect(const ReadLine& line) {
    return std::any_of(line.words.begin(), line.words.end(), isSuspect);
}

bool holdsRiddle(const ReadLine& line) {
    constexpr double unread = 40;
    constexpr qsizetype fewest = 2;
    return std::any_of(line.words.begin(), line.words.end(),
        [](const ReadWord& word) { return word.confidence < unread && letterCount(word.text) >= fewest; });
}

template <typename Wanted>
std::vector<Reading::Stretch> stretchesOf(std::vector<ReadLine>& lines, Wanted isWanted) {
    const auto isClearlyBelow = [](const ReadLine& line, const ReadLine& upper) {
        const double leastGap = -0.2 * std::min(line.box.height(), upper.box.height());
        return line.box.top() - upper.box.bottom() >= leastGap;
    };
    std::vector<Reading::Stretch> stretches;
    bool continues = false;
    for (auto first = lines.begin(); first != lines.end();) {
        auto last = std::next(first);
        while (last != lines.end() && !isClearlyBelow(*last, *std::prev(last)))
            ++last;
        const bool wanted = std::any_of(first, last, isWanted);
        if (wanted && continues)
            stretches.back() = std::span(stretches.back().data(), std::to_address(last));
        else if (wanted)
            stretches.emplace_back(first, last);
        continues = wanted;
        first = last;
    }
    return stretches;
}

}  // namespace

bool shareHeight(const QRectF& a, const QRectF& b) {
    const double shared = std::min(a.bottom(), b.bottom()) - std::max(a.top(), b.top());
    return shared > 0.5 * std::min(a.height(), b.height());
}

QString ReadLine::text() const {
    QString text;
    for (const ReadWord& word : words) {
        if (!text.isEmpty() && !isWideMark(text.back()) &&
            (word.isApart || !(isWrittenSolid(text.back()) && isWrittenSolid(word.text.front()))))
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
    for (const ReadLine& line : lines)
        if (line.box.width() >= leastShape * line.box.height())
            weakest = std::min(weakest, line.confidence());
    return weakest;
}

bool Reading::isAsLongAs(const Reading& other) const {
    return extentOf(*this) * 10 >= extentOf(other) * 6;
}

bool Reading::holdsWord() const {
    constexpr qsizetype fewest = 2;
    return extentOf(*this) >= fewest;
}

bool Reading::isBrokenRow() const {
    return lines.size() > 1 &&
        std::all_of(
            lines.begin() + 1, lines.end(),
            [this](const ReadLine& line) { return shareHeight(lines.front().box, line.box); });
}

bool Reading::looksVietnamese() const {
    const VietnameseShare share(*this);
    return share.isNoMistake() && share.own > 1;
}

int Reading::markCount() const {
    int marks = 0;
    for (const ReadLine& line : lines)
        marks += splitMarks(line.text()).marks;
    return marks;
}

bool Reading::hasForeignLetters() const {
    constexpr QStringView vietnamese = u"àáâãèéêìíòóôõùúýăđĩũơư";
    for (const ReadLine& line : lines) {
        for (const QChar c : line.text()) {
            const QChar lower = c.toLower();
            const bool isShared =
                lower < u'\u0080' || vietnamese.contains(lower) || (lower >= u'\u1ea0' && lower <= u'\u1ef9');
            if (c.isLetter() && !isShared)
                return true;
        }
    }
    return false;
}

bool Reading::holdsOtherScript() const {
    constexpr qsizetype oneIn = 6;
    qsizetype letters = 0;
    qsizetype others = 0;
    for (const ReadLine& line : lines) {
        for (const QChar c : line.text()) {
            letters += c.isLetter() ? 1 : 0;
            others += c.isLetter() && c.script() != QChar::Script_Latin ? 1 : 0;
        }
    }
    return others * oneIn >= letters && others > 0;
}

std::vector<Reading::Stretch> Reading::linesThatMayLackMarks() {
    if (!VietnameseShare(*this).isNoMistake())
        return {};
    return stretchesOf(lines, holdsSuspect);
}

std::vector<Reading::Stretch> Reading::linesBelow(double enough) {
    return stretchesOf(
        lines,
        [enough](const ReadLine& line) { return line.confidence() < enough || tralio::holdsRiddle(line); });
}

Reading::Heights Reading::heightsOf(Stretch stretch) const {
    constexpr double endless = std::numeric_limits<double>::infinity();
    const ReadLine* const first = stretch.data();
    const ReadLine* const last = &stretch.back();
    return {first == lines.data() ? -endless : (std::prev(first)->box.bottom() + first->box.top()) / 2,
        last == &lines.back() ? endless : (last->box.bottom() + std::next(last)->box.top()) / 2};
}

bool Reading::holdsRiddle() const {
    return std::any_of(
        lines.begin(), lines.end(), [](const ReadLine& line) { return tralio::holdsRiddle(line); });
}

bool Reading::isHanAlone() const {
    bool isHan = false;
    for (const ReadLine& line : lines)
        for (const QChar c : line.text()) {
            isHan = isHan || c.script() == QChar::Script_Han;
            if (c.script() == QChar::Script_Hiragana || c.script() == QChar::Script_Katakana)
                return false;
        }
    return isHan;
}

void Reading::tellDotsFromDashes() {
    for (ReadLine& line : lines)
        for (ReadWord& word : line.words)
            if ((word.text == u"-" || word.text == u"—") && word.box.height() > 0 &&
                word.box.width() <= 1.4 * word.box.height())
                word.text = u"·"_s;
}

void Reading::dropDirt() {
    for (ReadLine& line : lines) {
        while (!line.words.empty() && isDirt(line.words.back()))
            line.words.pop_back();
        const auto first = std::find_if(
            line.words.begin(), line.words.end(), [](const ReadWord& word) { return !isDirt(word); });
        line.words.erase(line.words.begin(), first);
    }
    std::erase_if(lines, [](const ReadLine& line) { return isDirt(line); });
}

}  // namespace tralio
