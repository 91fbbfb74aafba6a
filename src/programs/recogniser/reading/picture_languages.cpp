#include "programs/recogniser/reading/picture_languages.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "programs/recogniser/reading/letter_marks.h"
#include "programs/recogniser/reading/marks_above.h"
#include "programs/recogniser/reading/mixed_reading.h"
#include "programs/recogniser/reading/prices.h"

namespace tralio {
namespace {

constexpr double sure = 85;
constexpr double beyondDoubt = 95;
constexpr std::array<QStringView, 4> scripts{u"rus", u"jpn", u"chi_sim", u"kor"};
constexpr std::array<QStringView, 3> latinPacks{u"fra", u"deu", u"spa"};

bool isLatin(QChar c) {
    return c.isLetter() && c.script() == QChar::Script_Latin;
}

bool isOther(QChar c) {
    return c.isLetter() && c.script() != QChar::Script_Latin;
}

qsizetype count(const QString& text, bool (*isWanted)(QChar)) {
    return std::ranges::count_if(text, isWanted);
}

template <typename Map>
QString most(const Map& counts) {
    const auto best = std::ranges::max_element(counts, {}, [](const auto& each) { return each.second; });
    return best == counts.end() ? QString() : best->first;
}

}  // namespace

PictureLanguages::PictureLanguages(const std::vector<Reading>& readings) {
    constexpr qsizetype fewest = 4;
    constexpr qsizetype oneIn = 4;
    std::map<QString, qsizetype> others;
    std::map<QString, qsizetype> marked;
    qsizetype latin = 0;
    qsizetype vietnamese = 0;
    for (const Reading& reading : readings) {
        vietnamese += reading.looksVietnamese() ? 1 : 0;
        for (const ReadLine& line : reading.lines)
            for (const ReadWord& word : line.words) {
                if (word.confidence < sure)
                    continue;
                latin += count(word.text, isLatin);
                if (std::ranges::find(scripts, word.pack) != scripts.end())
                    others[word.pack] += count(word.text, isOther);
                if (std::ranges::find(latinPacks, word.pack) != latinPacks.end())
                    marked[word.pack] += 1 + 4 * splitMarks(word.text).marks;
            }
    }
    qsizetype all = latin;
    for (const auto& [pack, letters] : others)
        all += letters;
    if (const QString script = most(others); others[script] >= fewest && others[script] * oneIn >= all) {
        m_script = script;
        m_isPlain = others[script] * 2 >= all;
    }
    m_isVietnamese = vietnamese > 0;
    if (const QString language = most(marked); marked[language] >= fewest)
        m_language = language;
}

QStringList PictureLanguages::worthTrying(const TextBlock& block, const Reading& reading) const {
    const auto isOpen = [&](const ReadLine& line) {
        return count(line.text(), isOther) == 0 ? line.confidence() < beyondDoubt : line.confidence() < sure;
    };
    const bool isWorse =
        reading.lines.size() < block.lines.size() || std::ranges::any_of(reading.lines, isOpen);
    if (block.isShaded || !isWorse)
        return {};
    const bool isOfScript = std::ranges::any_of(
        reading.lines, [](const ReadLine& line) { return count(line.text(), isOther) > 0; });
    QStringList packs;
    if (!m_script.isEmpty())
        packs += m_script;
    if (isOfScript || reading.looksVietnamese())
        return packs;
    constexpr size_t fewest = 3;
    if (!m_language.isEmpty())
        packs += m_language;
    else if (m_script.isEmpty() && !m_isVietnamese && reading.confidence() < sure &&
        block.lines.front().letters.size() >= fewest)
        for (const QStringView pack : latinPacks)
            packs += pack.toString();
    return packs;
}

void PictureLanguages::adopt(const QString& pack, Reading& reading, Reading other) const {
    other.dropDirt();
    if (other.lines.empty() || (reading.lines.empty() && (!other.holdsWord() || other.confidence() < sure)))
        return;
    if (pack == m_script) {
        const bool isOfScript = std::ranges::any_of(
            other.lines, [](const ReadLine& line) { return count(line.text(), isOther) > 0; });
        const auto isSurelyLatin = [](const ReadLine& line) {
            return line.confidence() >= sure && count(line.text(), isOther) == 0;
        };
        // "Paper" is "Рарег" to the Russian engine.
        const bool isLatin = !reading.lines.empty() && std::ranges::all_of(reading.lines, isSurelyLatin);
        const bool mayAllBeLatin = std::ranges::all_of(
            other.lines, [](const ReadLine& line) { return mayBeLatin(line.text(), beyondDoubt); });
        const double lead = !isLatin ? (m_isPlain ? 4 : 0) : mayAllBeLatin ? -3 : 0;
        const bool isPriced = !reading.lines.empty() &&
            std::ranges::all_of(reading.lines, [](const ReadLine& line) { return isPrice(line.text()); });
        if (isOfScript && !isPriced && other.isAsLongAs(reading) &&
            other.confidence() + lead >= reading.confidence())
            reading = std::move(other);
        return;
    }
    constexpr double margin = -2;
    adoptSurerMarks(reading.lines, other, margin);
    const int gained = other.markCount() - reading.markCount();
    const bool isOfLanguage = reading.lines.empty() || gained > 0 || (gained == 0 && pack == m_language);
    if (isOfLanguage && other.confidence() > reading.confidence() && other.isAsLongAs(reading))
        reading = std::move(other);
}

void PictureLanguages::restoreMarks(const TextBlock& block, Reading& reading, const Look& look) const {
    if (block.isShaded || reading.looksVietnamese() ||
        ((m_isVietnamese || !m_script.isEmpty()) && m_language.isEmpty()))
        return;
    std::vector<PoorWord> poor = wordsLackingMarks(reading, block.lines);
    QStringList packs;
    if (!m_language.isEmpty())
        packs += m_language;
    for (const QStringView pack : latinPacks)
        if (pack != m_language)
            packs += pack.toString();
    for (const QString& pack : packs) {
        if (poor.empty())
            return;
        adoptDrawnMarks(reading.lines, look(pack), block.lines, poor);
        // Without a language of the picture the surest is taken.
        if (pack == m_language)
            poor = wordsLackingMarks(reading, block.lines);
    }
}

void PictureLanguages::writeRoubles(Reading& reading) const {
    constexpr QChar firstOfEastAsia = u'\u1100';
    const auto isOfFigure = [](QChar c) { return c.isDigit() || c == u',' || c == u'.' || c == u' '; };
    if (m_script != u"rus")
        return;
    for (ReadLine& line : reading.lines) {
        const QString text = line.text();
        if (text.size() > 1 && text.back().isLetter() && text.back() >= firstOfEastAsia &&
            text.front().isDigit() && std::all_of(text.begin(), text.end() - 1, isOfFigure))
            line.words.back().text.back() = u'₽';
    }
}

}  // namespace tralio
