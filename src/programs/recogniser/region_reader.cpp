#include "programs/recogniser/region_reader.h"

#include <array>
#include <utility>

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
constexpr double mixedFrom = 50;
constexpr double latinFrom = 55;
constexpr double otherPictureBelow = 88;
constexpr double pictureFoundAt = 91;
constexpr double noTextBelow = 50;
constexpr double balancedFrom = 0.6;

/// No further look is begun after so much work: what is so large and reads so badly is hardly text. This is
/// the processor's time, or a busy machine would find no text where there is some.
constexpr double mostSeconds = 6;

constexpr QStringView vietnamesePack = u"vie";
constexpr QStringView englishPack = u"eng";
/// Vietnamese leads, and takes English with it; the other way round tone marks suffer.
constexpr std::array<QStringView, 2> leadingPacks{vietnamesePack, englishPack};
constexpr std::array<QStringView, 4> otherScripts{u"rus", u"jpn", u"chi_sim", u"kor"};
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

RegionReader::RegionReader(EnginePool& engines, const QStringList& packs, const QImage& image)
    : m_engines(engines), m_packs(packs), m_pictures(image) {}

QString RegionReader::leadingEngine(const QStringList& packs) {
    const QStringList leading = present(leadingPacks, packs);
    return leading.isEmpty() ? packs.value(0) : leading.join(u'+');
}

QStringList RegionReader::otherEngines(const QStringList& packs) {
    QStringList others;
    if (packs.contains(vietnamesePack))
        others += vietnamesePack.toString();
    others += present(otherScripts, packs) + present(otherLanguages, packs);
    others.removeAll(leadingEngine(packs));
    return others;
}

RegionReader::Look RegionReader::look(const QString& engine, TextPictures::Kind kind) {
    Look look;
    look.engine = engine;
    TextEngine* const loaded = hasTimeLeft() ? m_engines.engine(engine) : nullptr;
    if (!loaded)
        return look;
    const bool isPlain = kind == TextPictures::Kind::difference;
    if (isPlain && m_plain.width() == 0)
        m_plain = m_pictures.picture(kind);
    const Plane other = isPlain ? Plane() : m_pictures.picture(kind);
    const Plane& picture = isPlain ? m_plain : other;
    look.reading = loaded->read(picture);
    // A short row of wide signs is taken for columns.
    if (look.reading.isBrokenRow()) {
        Reading row = loaded->read(picture, TextEngine::Layout::singleLine);
        if (row.confidence() > look.reading.confidence())
            look.reading = std::move(row);
    }
    if (engine == leadingEngine(m_packs))
        restoreMarks(look.reading, picture);
    for (ReadLine& line : look.reading.lines) {
        line.box.translate(-TextPictures::border, -TextPictures::border);
        line.box = QRectF(line.box.topLeft() / m_pictures.scale(), line.box.size() / m_pictures.scale());
    }
    look.confidence = look.reading.confidence();
    return look;
}

Reading RegionReader::read(Effort effort) {
    m_started = std::clock();
    m_best = look(leadingEngine(m_packs), TextPictures::Kind::difference);
    if (effort == Effort::untilConfident && !isCertain()) {
        tryOtherScripts(TextPictures::Kind::difference);
        tryOtherLanguages();
        tryOtherPictures();
        if (m_best.confidence < farScriptBelow)
            tryOtherScripts(TextPictures::Kind::lineByLine);
    }
    m_best.reading.dropDirt();
    if (m_best.reading.confidence() < noTextBelow)
        return {};
    return m_best.reading;
}

void RegionReader::tryOtherScripts(TextPictures::Kind kind) {
    const bool leadingReadsIll = m_best.reading.weakestLine() < farScriptBelow;
    for (const QString& pack : present(otherScripts, m_packs)) {
        const bool isFar = pack != u"rus";
        const double weakest = m_best.reading.weakestLine();
        if (weakest >= (isFar ? scriptFoundAt : anotherScriptBelow) || (isFar && !leadingReadsIll))
            return;
        const Look other = look(pack, kind);
        takeBetterLines(other);
        // Names and terms in the middle of a line want English beside it, which would spoil a plain text.
        const bool isMixed = other.reading.holdsOtherScript() && other.confidence >= mixedFrom;
        if (isFar && isMixed && m_best.reading.weakestLine() < scriptFoundAt && m_packs.contains(englishPack))
            takeBetterLines(look(QStringList{pack, englishPack.toString()}.join(u'+'), kind));
    }
}

void RegionReader::takeBetterLines(const Look& other) {
    // A region may hold several scripts, one line each: every line goes to the engine that reads it best.
    Look mixed{bestLines(m_best.reading, other.reading, scriptMargin), m_best.engine, 0};
    mixed.confidence = mixed.reading.confidence();
    if (other.confidence > m_best.confidence)
        mixed.engine = other.engine;
    keepIfBetter(std::move(mixed), 0);
}

void RegionReader::tryOtherLanguages() {
    // The others are surer of a Vietnamese text, even of a short one, whose marks they do not see or do not
    // have; what they are good for is the letters that bear marks of their own.
    if (m_best.engine != leadingEngine(m_packs) || m_best.reading.looksVietnamese())
        return;
    for (const QString& pack : present(otherLanguages, m_packs)) {
        if (m_best.confidence >= certain || m_best.confidence < latinFrom)
            return;
        Look other = look(pack, TextPictures::Kind::difference);
        const int gained = other.reading.markCount() - m_best.reading.markCount();
        if (gained > 0 || (gained == 0 && other.reading.hasForeignLetters()))
            keepIfBetter(std::move(other), 1);
    }
}

void RegionReader::tryOtherPictures() {
    using Kind = TextPictures::Kind;
    if (m_best.confidence >= certain ||
        (m_best.confidence >= otherPictureBelow && m_pictures.balance() < balancedFrom))
        return;
    for (const Kind kind : {Kind::brighter, Kind::darker, Kind::green, Kind::lineByLine}) {
        keepIfBetter(look(m_best.engine, kind), 0);
        if (m_best.confidence >= pictureFoundAt)
            return;
    }
}

void RegionReader::restoreMarks(Reading& reading, const Plane& picture) {
    // With two languages in one engine English wins small words whose marks are faint: "trang" for "trạng".
    if (!reading.mayLackMarks() || !hasTimeLeft())
        return;
    if (TextEngine* const vietnamese = m_engines.engine(vietnamesePack.toString()))
        reading.adoptMarks(vietnamese->read(picture));
}

bool RegionReader::isCertain() const {
    return m_best.confidence >= certain && m_best.reading.weakestLine() >= farScriptBelow;
}

bool RegionReader::hasTimeLeft() const {
    return static_cast<double>(std::clock() - m_started) < mostSeconds * CLOCKS_PER_SEC;
}

void RegionReader::keepIfBetter(Look other, double margin) {
    if (other.confidence > m_best.confidence + margin)
        m_best = std::move(other);
}

}  // namespace tralio
