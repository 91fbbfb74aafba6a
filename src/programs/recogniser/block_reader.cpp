#include "programs/recogniser/block_reader.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "programs/recogniser/mending/as_drawn.h"
#include "programs/recogniser/reading/is_text.h"
#include "programs/recogniser/reading/letter_marks.h"
#include "programs/recogniser/reading/mixed_reading.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

// Confidences, 0 to 100, at which reading stops or takes another way. They were tuned on rendered screen
// regions in nine languages; `benchmarks/ocr` prints what they give.
constexpr double certain = 94;
constexpr double anotherScriptBelow = 88;
constexpr double farScriptBelow = 60;
constexpr double scriptFoundAt = 84;
constexpr double scriptMargin = 3;
constexpr double languageMargin = 4;
constexpr double latinFrom = 55;
constexpr double otherPictureBelow = 88;
constexpr double pictureFoundAt = 91;
constexpr double balancedFrom = 0.6;

constexpr QStringView vietnamesePack = u"vie";
constexpr QStringView englishPack = u"eng";
/// Vietnamese leads, and takes English with it; the other way round tone marks suffer.
constexpr std::array<QStringView, 2> leadingPacks{vietnamesePack, englishPack};
constexpr QStringView japanesePack = u"jpn";
constexpr QStringView chinesePack = u"chi_sim";
constexpr std::array<QStringView, 4> otherScripts{u"rus", japanesePack, chinesePack, u"kor"};
constexpr std::array<QStringView, 3> otherLanguages{u"fra", u"deu", u"spa"};

template <size_t count>
QStringList present(const std::array<QStringView, count>& wanted, const QStringList& packs) {
    QStringList result;
    for (const QStringView pack : wanted)
        if (packs.contains(pack))
            result += pack.toString();
    return result;
}

}  // namespace

BlockReader::BlockReader(EnginePool& engines, const QStringList& packs, const BlockPainter& painter,
    WorkBudget& budget, VainLooks vain)
    : m_engines(engines), m_packs(packs), m_painter(painter), m_budget(budget), m_vain(std::move(vain)) {}

QString BlockReader::leadingEngine(const QStringList& packs) {
    const QStringList leading = present(leadingPacks, packs);
    return leading.isEmpty() ? packs.value(0) : leading.join(u'+');
}

QStringList BlockReader::otherEngines(const QStringList& packs) {
    QStringList others;
    if (packs.contains(vietnamesePack))
        others += vietnamesePack.toString();
    others += present(otherScripts, packs) + present(otherLanguages, packs);
    others.removeAll(leadingEngine(packs));
    return others;
}

const BlockPicture& BlockReader::picture(TextMarks::Kind kind) {
    auto found = m_pictures.find(kind);
    if (found == m_pictures.end())
        found = m_pictures.emplace(kind, m_painter.paint(*m_block, kind)).first;
    return found->second;
}

Reading BlockReader::readPart(TextEngine& engine, const BlockPicture& part) const {
    Reading reading = engine.read(part.plane);
    // A short row of wide signs is taken for columns.
    if (reading.isBrokenRow()) {
        Reading row = engine.read(part.plane, TextEngine::Layout::singleLine);
        if (row.confidence() > reading.confidence())
            reading = std::move(row);
    }
    reading.tellDotsFromDashes();
    for (ReadLine& line : reading.lines) {
        line.box = part.inImage(line.box);
        for (ReadWord& word : line.words)
            word.box = part.inImage(word.box);
    }
    writeAsDrawn(reading, m_block->lines, part);
    return reading;
}

BlockReader::Look BlockReader::look(const QString& engine, TextMarks::Kind kind) {
    Look look;
    look.engine = engine;
    TextEngine* const loaded = m_engines.engine(engine);
    if (!loaded)
        return look;
    const BlockPicture& seen = picture(kind);
    look.reading = readPart(*loaded, seen);
    if (engine == leadingEngine(m_packs))
        restoreMarks(look.reading, seen);
    look.confidence = look.reading.confidence();
    return look;
}

BlockReader::Look BlockReader::lookAtLines(const QString& engine, TextMarks::Kind kind, double below) {
    const std::vector<Reading::Stretch> stretches = m_best.reading.linesBelow(below);
    size_t count = 0;
    for (const Reading::Stretch stretch : stretches)
        count += stretch.size();
    // Engines read a line better beside others, by which they know how high its letters are.
    constexpr size_t oneIn = 3;
    const size_t lines = m_best.reading.lines.size();
    TextEngine* const loaded = m_engines.engine(engine);
    if (!loaded || count == 0 || count * oneIn > lines || lines < m_block->lines.size())
        return look(engine, kind);
    Look look;
    look.engine = engine;
    for (const Reading::Stretch stretch : stretches) {
        const auto [top, bottom] = m_best.reading.heightsOf(stretch);
        Reading part = readPart(*loaded, picture(kind).strip(top, bottom));
        look.reading.lines.insert(look.reading.lines.end(), std::move_iterator(part.lines.begin()),
            std::move_iterator(part.lines.end()));
    }
    look.confidence = look.reading.confidence();
    return look;
}

Reading BlockReader::read(const TextBlock& block, Effort effort) {
    m_block = &block;
    m_pictures.clear();
    m_furtherSince = m_budget.now();
    m_best = look(leadingEngine(m_packs), block.kind);
    const bool looksFurther = effort == Effort::untilConfident && !isCertain() && isWorthwhile();
    const double atFirst = m_best.confidence;
    m_furtherSince = m_budget.now();
    if (looksFurther)
        lookFurther();
    m_best.reading.dropDirt();
    std::erase_if(m_best.reading.lines, [&](const ReadLine& line) { return !isText(line, block.isShaded); });
    constexpr double worthIt = 3;
    if (looksFurther && (m_best.reading.lines.empty() || m_best.confidence < atFirst + worthIt))
        m_budget.addFruitless(m_furtherSince);
    return std::move(m_best.reading);
}

void BlockReader::readAgain(const TextBlock& block, const PictureLanguages& languages, Reading& reading) {
    m_block = &block;
    m_pictures.clear();
    m_furtherSince = m_budget.now();
    for (const QString& pack : languages.worthTrying(block, reading))
        if (m_packs.contains(pack) && hasTime())
            languages.adopt(pack, reading, look(pack, block.kind).reading);
    languages.restoreMarks(block, reading, [&](const QString& pack) {
        return m_packs.contains(pack) && hasTime() ? look(pack, block.kind).reading : Reading();
    });
}

void BlockReader::lookFurther() {
    tryOtherScripts(m_block->kind);
    tryOtherLanguages();
    tryOtherPictures();
    if (m_best.confidence < farScriptBelow)
        tryOtherScripts(TextMarks::Kind::lineByLine);
}

bool BlockReader::isWorthwhile() const {
    // What looks by chance like a few letters is read ill by every engine.
    constexpr size_t manyLetters = 8;
    constexpr double hopeful = 65;
    const auto hasMany = [](const TextLine& line) { return line.letters.size() >= manyLetters; };
    return !m_block->isShaded || m_best.confidence >= hopeful ||
        std::any_of(m_block->lines.begin(), m_block->lines.end(), hasMany);
}

void BlockReader::tryOtherScripts(TextMarks::Kind kind) {
    QStringList scripts = present(otherScripts, m_packs);
    if (scripts.removeOne(m_usualScript))
        scripts.prepend(m_usualScript);
    for (const QString& pack : scripts) {
        const double enough = pack == u"rus" ? anotherScriptBelow : scriptFoundAt;
        const double weakest = m_best.reading.weakestLine();
        const bool isOpen = weakest < enough || m_best.reading.holdsRiddle() ||
            (pack == chinesePack && m_best.engine == japanesePack && m_best.reading.isHanAlone());
        if (!isOpen || !hasTime())
            return;
        // Of what is no text nothing is concluded.
        const bool isKnown = m_best.confidence >= textFrom;
        const QString way = u"%1 %2"_s.arg(pack).arg(static_cast<int>(kind));
        if (isKnown && m_vain.isVain(way, weakest))
            continue;
        const double before = m_best.confidence;
        takeBetterLines(lookAtLines(pack, kind, enough));
        if (isKnown)
            m_vain.add(way, weakest, m_best.confidence > before);
    }
}

void BlockReader::takeBetterLines(const Look& other) {
    // A region may hold several scripts, one line each: every line goes to the engine that reads it best, and
    // gets the words of another script from the one that writes that.
    Reading named = other.reading;
    adoptWords(named, m_best.reading, ScriptKind::latin);
    Look mixed{bestLines(m_best.reading, named, scriptMargin), m_best.engine, 0};
    adoptWords(mixed.reading, other.reading, ScriptKind::other);
    mixed.confidence = mixed.reading.confidence();
    if (other.confidence > m_best.confidence) {
        m_usualScript = other.engine;
        // Of a few lines it tells nothing about the others.
        if (other.reading.lines.size() >= m_best.reading.lines.size())
            mixed.engine = other.engine;
    }
    keepIfBetter(std::move(mixed), 0);
}

void BlockReader::tryOtherLanguages() {
    // The other Latin engines report a higher confidence even for Vietnamese text, since they ignore tone
    // marks that they do not know. They are tried only for letters with diacritics that Vietnamese lacks.
    if (m_best.engine != leadingEngine(m_packs) || m_best.reading.looksVietnamese())
        return;
    for (const QString& pack : present(otherLanguages, m_packs)) {
        if (m_best.confidence >= certain || m_best.confidence < latinFrom || !hasTime())
            return;
        const double before = m_best.confidence;
        if (m_vain.isVain(pack, before))
            continue;
        Look other = look(pack, m_block->kind);
        const int gained = other.reading.markCount() - m_best.reading.markCount();
        // Many marks of one language are of another, too.
        const bool isMuchSurer = other.confidence >= certain && other.confidence >= before + languageMargin &&
            other.reading.holdsWord();
        const bool isOfItsLanguage =
            gained > 0 || (gained == 0 && (isMuchSurer || other.reading.hasForeignLetters()));
        m_vain.add(pack, before, isOfItsLanguage);
        if (!isOfItsLanguage)
            continue;
        // "élèves" beside a word that it does not see so well. What this gains does not count against the
        // languages that follow.
        if (other.confidence >= m_best.confidence - languageMargin)
            adoptSurerMarks(m_best.reading.lines, other.reading);
        keepIfBetter(std::move(other), 1);
    }
}

void BlockReader::tryOtherPictures() {
    using Kind = TextMarks::Kind;
    if (m_best.confidence >= certain ||
        (m_best.confidence >= otherPictureBelow && m_painter.balanceOf(*m_block) < balancedFrom))
        return;
    for (const Kind kind : {Kind::difference, Kind::brighter, Kind::darker, Kind::green, Kind::lineByLine}) {
        if (kind == m_block->kind)
            continue;
        if (!hasTime())
            return;
        const QString way = u"picture %1"_s.arg(static_cast<int>(kind));
        const double before = m_best.confidence;
        if (m_vain.isVain(way, before))
            continue;
        Look other = look(m_best.engine, kind);
        m_vain.add(way, before, other.confidence > before);
        if (other.confidence > m_best.confidence) {
            addMissingLines(other.reading, m_best.reading, m_block->isShaded);
            other.confidence = other.reading.confidence();
            if (other.reading.isAsLongAs(m_best.reading))
                m_best = std::move(other);
        }
        if (m_best.confidence >= pictureFoundAt)
            return;
    }
}

void BlockReader::restoreMarks(Reading& reading, const BlockPicture& picture) {
    // With two languages in one engine English wins small words whose marks are faint: "trang" for "trạng".
    const std::vector<Reading::Stretch> stretches = reading.linesThatMayLackMarks();
    TextEngine* const vietnamese = stretches.empty() ? nullptr : m_engines.engine(vietnamesePack.toString());
    if (!vietnamese)
        return;
    for (const Reading::Stretch stretch : stretches) {
        if (!hasTime())
            return;
        const double since = m_budget.now();
        const auto [top, bottom] = reading.heightsOf(stretch);
        if (!adoptMarks(stretch, vietnamese->read(picture.strip(top, bottom).plane)))
            m_budget.addFruitless(since);
    }
}

bool BlockReader::isCertain() const {
    return m_best.confidence >= certain && m_best.reading.weakestLine() >= farScriptBelow;
}

void BlockReader::keepIfBetter(Look other, double margin) {
    if (other.confidence > m_best.confidence + margin && other.reading.isAsLongAs(m_best.reading))
        m_best = std::move(other);
}

}  // namespace tralio
