#include "programs/recogniser/mending/odd_signs.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

#include "programs/recogniser/lines/icon_leads.h"
#include "programs/recogniser/pixels/boxes.h"

namespace tralio {
namespace {

/// How many letters of each script a picture has, but for those alone in a word.
class Scripts {
public:
    explicit Scripts(const std::vector<ReadLine>& lines) {
        for (const ReadLine& line : lines)
            for (const ReadWord& word : line.words)
                if (word.text.size() > 1 || !isOdd(word))
                    for (const QChar c : word.text)
                        add(c, word);
    }

    /// Whether it is one sign of a script that nothing else is of.
    [[nodiscard]] bool isForeign(const ReadWord& word) const {
        constexpr qsizetype enough = 12;
        return word.text.size() == 1 && word.text.front().isLetter() &&
            !m_counts.contains(kindOf(word.text.front(), word)) && m_all >= enough;
    }

private:
    using Kind = std::pair<QChar::Script, bool>;

    static bool isOdd(const ReadWord& word) { return word.confidence < 80; }

    /// Chinese signs of Japanese texts are others.
    static Kind kindOf(QChar c, const ReadWord& word) {
        const bool isJapanese = c.script() == QChar::Script_Han && word.pack == u"jpn";
        return {c.script(), isJapanese};
    }

    void add(QChar c, const ReadWord& word) {
        if (!c.isLetter())
            return;
        ++m_all;
        ++m_counts[kindOf(c, word)];
        // Both kinds of syllables and Chinese signs are of one language.
        if (c.script() == QChar::Script_Hiragana || c.script() == QChar::Script_Katakana)
            for (const QChar::Script script :
                {QChar::Script_Hiragana, QChar::Script_Katakana, QChar::Script_Han})
                for (const bool isJapanese : {false, true})
                    ++m_counts[{script, isJapanese}];
    }

    std::map<Kind, qsizetype> m_counts;
    qsizetype m_all = 0;
};

const TextLine* drawnLine(const QRectF& box, const std::vector<TextBlock>& blocks) {
    for (const TextBlock& block : blocks)
        for (const TextLine& line : block.lines)
            if (!line.letters.empty() && QRectF(line.box).adjusted(-2, -2, 2, 2).contains(box.center()) &&
                shareHeight(box, line.box))
                return &line;
    return nullptr;
}

bool isOne(const QString& text, QStringView signs) {
    return text.size() == 1 && signs.contains(text.front());
}

/// How high the capitals of the text are that stands nearest in the row of a line.
int typeBeside(const TextLine& line, const std::vector<TextBlock>& blocks) {
    constexpr size_t fewest = 3;
    const TextLine* nearest = nullptr;
    for (const TextBlock& block : blocks)
        for (const TextLine& other : block.lines)
            if (&other != &line && other.letters.size() >= fewest && shareRow(other.box, line.box) &&
                (!nearest || horizontalGap(other.box, line.box) < horizontalGap(nearest->box, line.box)))
                nearest = &other;
    return nearest ? Type(nearest->letters).height : 0;
}

/// Alone in its line and larger than its sign is beside the text of its row.
bool isTooLarge(const QString& text, const TextLine& line, int type) {
    constexpr QStringView brackets = u"()[]{}|";
    constexpr QStringView small = u"~`´'^°";
    return type > 0 &&
        ((isOne(text, brackets) && line.box.height() * 10 > type * 14) ||
            (isOne(text, small) && line.box.height() * 20 > type * 9));
}

/// The marks of a line up to where a word ends, and the gap behind them.
struct LeadingMarks {
    QRect box;
    int gap = 0;
    int type = 0;  ///< how high the capitals of what follows are

    LeadingMarks(const TextLine& line, const QRectF& word) {
        std::vector<QRect> rest;
        int next = line.box.right() + 1;
        for (const QRect& mark : line.marks())
            if (QRectF(mark).center().x() <= word.right())
                box |= mark;
            else
                next = std::min(next, mark.left());
        std::ranges::copy_if(line.letters, std::back_inserter(rest),
            [&](const QRect& mark) { return QRectF(mark).center().x() > word.right(); });
        gap = next - box.right() - 1;
        type = rest.empty() ? 0 : Type(rest).height;
    }
};

bool isDrawingAlone(const ReadWord& word, const TextLine& line, const Scripts& scripts,
    const std::vector<TextBlock>& blocks) {
    constexpr double sure = 70;
    return (scripts.isForeign(word) && word.confidence < sure) ||
        isTooLarge(word.text, line, typeBeside(line, blocks));
}

bool isDrawingBefore(const ReadLine& text, const TextLine& line, const Scripts& scripts) {
    constexpr double sure = 70;
    constexpr QStringView signsOfEnds = u"©®™";
    const ReadWord& word = text.words.front();
    const LeadingMarks lead(line, word.box);
    if (lead.type == 0 || lead.box.isNull() || lead.gap * 100 < lead.type * 56)
        return false;
    if (scripts.isForeign(word))
        return word.confidence < sure;
    const auto holdsDigit = [](const ReadWord& each) {
        return std::any_of(each.text.begin(), each.text.end(), [](QChar c) { return c.isDigit(); });
    };
    return isOne(word.text, signsOfEnds) && std::ranges::none_of(text.words, holdsDigit);  // "© 2024"
}

/// Marks that are left out as rules or leaders may be read all the same.
bool isNowhere(const ReadWord& word, const TextLine& line) {
    constexpr double sure = 75;
    return word.confidence < sure && isOne(word.text, u"·•'`´°") &&
        std::ranges::none_of(line.marks(), [&](const QRect& mark) {
            return mark.right() >= word.box.left() - 1 && mark.left() <= word.box.right() + 1;
        });
}

}  // namespace

void dropOddSigns(std::vector<ReadLine>& lines, const std::vector<TextBlock>& blocks) {
    const Scripts scripts(lines);
    std::erase_if(lines, [&](ReadLine& text) {
        const TextLine* const line = drawnLine(text.box, blocks);
        if (!line || line->isShaded)
            return false;
        std::erase_if(text.words, [&](const ReadWord& word) { return isNowhere(word, *line); });
        if (text.words.size() > 1 && isDrawingBefore(text, *line, scripts))
            text.words.erase(text.words.begin());
        return text.words.empty() ||
            (text.words.size() == 1 && isDrawingAlone(text.words.front(), *line, scripts, blocks));
    });
}

}  // namespace tralio
