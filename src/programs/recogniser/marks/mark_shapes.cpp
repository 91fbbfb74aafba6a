#include "programs/recogniser/marks/mark_shapes.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <map>
#include <set>

#include "programs/recogniser/marks/drawings.h"
#include "programs/recogniser/marks/outlined_letters.h"
#include "programs/recogniser/marks/rules.h"
#include "programs/recogniser/marks/underlines.h"
#include "programs/recogniser/pixels/labels.h"

namespace tralio {
namespace {

using Kind = TextMarks::Kind;

constexpr int rim = 1;         ///< pixels around a mark that its blur has reached
constexpr int faint = 8;       ///< below this there is only ground
constexpr int leastFull = 20;  ///< a mark of which no pixel is as strong is noise

/// How strong a pixel of a letter is, of its full strength: what is below is blur.
bool isInk(int strength, int full) {
    return strength * 100 > full * 37;
}

bool always(size_t, size_t) {
    return true;
}

Labels flatInk(const TextMarks& marks, const Plane& strengths) {
    const std::vector<quint8>& values = strengths.pixels();
    const int width = strengths.width();
    const auto isShaded = [&](size_t i) {
        return marks.ground().hasShades() &&
            marks.ground().isShadedAt(QPoint(static_cast<int>(i % static_cast<size_t>(width)),
                static_cast<int>(i / static_cast<size_t>(width))));
    };
    const Labels blurred = connect(
        width, strengths.height(), Neighbours::eight,
        [&](size_t i) { return values[i] >= faint && !isShaded(i); }, always);
    std::vector<int> full(static_cast<size_t>(blurred.count));
    for (size_t i = 0; i < values.size(); ++i)
        if (blurred.of[i] != Labels::none)
            full[static_cast<size_t>(blurred.of[i])] =
                std::max<int>(full[static_cast<size_t>(blurred.of[i])], values[i]);
    return connect(
        width, strengths.height(), Neighbours::eight,
        [&](size_t i) {
            if (blurred.of[i] == Labels::none)
                return false;
            const int strongest = full[static_cast<size_t>(blurred.of[i])];
            return strongest >= leastFull && isInk(values[i], strongest);
        },
        always);
}

Labels shadedInk(const TextMarks& marks, const Plane& strengths) {
    const int full = fullStrength(strengths);
    const std::vector<quint8>& values = strengths.pixels();
    const auto width = static_cast<size_t>(strengths.width());
    return connect(
        strengths.width(), strengths.height(), Neighbours::eight,
        [&](size_t i) {
            return isInk(values[i], full) &&
                marks.ground().isShadedAt(QPoint(static_cast<int>(i % width), static_cast<int>(i / width)));
        },
        always);
}

struct LetterColours {
    std::vector<QRgb>
        frequent;   ///< those of most pieces of the size of letters, and white, as most captions are
    QRgb outlined;  ///< that of most such pieces with a darker rim
};

LetterColours findLetterColours(const TextMarks& marks) {
    constexpr int tolerance = 6;
    constexpr int leastHeight = 5;
    constexpr int mostHeight = 120;
    constexpr size_t most = 4;
    const Channels& channels = marks.channels();
    const auto isEven = [&](size_t a, size_t b) {
        return std::none_of(
            channels.begin(), channels.end(),
            [&](const Plane& plane) { return std::abs(plane.pixels()[a] - plane.pixels()[b]) > tolerance; });
    };
    const Labels pieces = connect(
        marks.size().width(), marks.size().height(), Neighbours::four, [](size_t) { return true; }, isEven);
    const std::vector<Extent> extents = extentsOf(pieces);
    std::vector<bool> areLetters(extents.size());
    for (size_t i = 0; i < extents.size(); ++i) {
        const QRect& box = extents[i].box;
        areLetters[i] = box.height() >= leastHeight * marks.unit() &&
            box.height() <= mostHeight * marks.unit() && box.width() <= 2 * box.height() &&
            extents[i].area * 8 >= box.height() * box.height();
    }
    const std::vector<Rim> rims = rimsOf(pieces, areLetters, marks);
    std::vector<bool> isCounted(extents.size());
    struct Colour {
        int count = 0;
        int rimmed = 0;
        int red = 0;
        int green = 0;
        int blue = 0;
    };
    std::map<int, Colour> colours;
    for (size_t i = 0; i < pieces.of.size(); ++i) {
        const auto piece = static_cast<size_t>(pieces.of[i]);
        if (isCounted[piece] || !areLetters[piece])
            continue;
        isCounted[piece] = true;
        const std::array<int, 3> rgb{
            channels[0].pixels()[i], channels[1].pixels()[i], channels[2].pixels()[i]};
        Colour& colour = colours[(rgb[0] >> 5) << 6 | (rgb[1] >> 5) << 3 | rgb[2] >> 5];
        ++colour.count;
        if (rims[piece].isClosed())
            ++colour.rimmed;
        colour.red += rgb[0];
        colour.green += rgb[1];
        colour.blue += rgb[2];
    }
    std::vector<Colour> sorted;
    sorted.reserve(colours.size());
    for (const auto& [bin, colour] : colours)
        sorted.push_back(colour);
    const auto meanOf = [](const Colour& colour) {
        return qRgb(colour.red / colour.count, colour.green / colour.count, colour.blue / colour.count);
    };
    constexpr QRgb white = qRgb(255, 255, 255);
    LetterColours result{{white}, white};
    const auto rimmed = std::ranges::max_element(sorted, {}, &Colour::rimmed);
    if (rimmed != sorted.end() && rimmed->rimmed > 0)
        result.outlined = meanOf(*rimmed);
    std::sort(
        sorted.begin(), sorted.end(), [](const Colour& a, const Colour& b) { return a.count > b.count; });
    sorted.resize(std::min(sorted.size(), most));
    for (const Colour& colour : sorted) {
        const QRgb mean = meanOf(colour);
        if (std::min({qRed(mean), qGreen(mean), qBlue(mean)}) < 240)
            result.frequent.push_back(mean);
    }
    return result;
}

/// What has about that colour, anywhere or in photographs only.
Labels inkOfColour(const TextMarks& marks, QRgb colour, bool anywhere) {
    constexpr int tolerance = 40;
    const Channels& channels = marks.channels();
    const std::array<int, 3> wanted{qRed(colour), qGreen(colour), qBlue(colour)};
    const auto width = static_cast<size_t>(marks.size().width());
    return connect(
        marks.size().width(), marks.size().height(), Neighbours::eight,
        [&](size_t i) {
            for (size_t channel = 0; channel < wanted.size(); ++channel)
                if (std::abs(channels[channel].pixels()[i] - wanted[channel]) > tolerance)
                    return false;
            return anywhere ||
                marks.ground().isShadedAt(QPoint(static_cast<int>(i % width), static_cast<int>(i / width)));
        },
        always);
}

void markRim(Plane& mask, int x, int y) {
    for (int row = std::max(0, y - rim); row <= std::min(mask.height() - 1, y + rim); ++row)
        std::fill(mask.row(row) + std::max(0, x - rim),
            mask.row(row) + std::min(mask.width() - 1, x + rim) + 1, quint8(1));
}

/// Whether a pixel lies between two flat areas of different colours.
bool isBetweenAreas(const TextMarks& marks, QPoint pixel) {
    constexpr int reach = 2;
    constexpr int leastDifference = 6;
    const Ground& ground = marks.ground();
    const QSize size = marks.size();
    const int step = reach * marks.unit();
    const auto clamped = [&](int dx, int dy) {
        return QPoint(std::clamp(pixel.x() + dx, 0, size.width() - 1),
            std::clamp(pixel.y() + dy, 0, size.height() - 1));
    };
    const QPoint around[] = {clamped(-step, 0), clamped(step, 0), clamped(0, -step), clamped(0, step)};
    const int own = ground.regionAt(pixel);
    return std::any_of(std::begin(around), std::end(around), [&](QPoint other) {
        if (ground.regionAt(other) == own)
            return false;
        return std::any_of(ground.colours().begin(), ground.colours().end(), [&](const Plane& colour) {
            return std::abs(colour.row(other.y())[other.x()] - colour.row(pixel.y())[pixel.x()]) >=
                leastDifference;
        });
    });
}

/// Which marks are edges: of a band, a button or a bubble, with its border and its blur.
std::vector<bool> findEdges(const Labels& ink, const std::vector<Extent>& extents, const TextMarks& marks) {
    std::vector<int> between(extents.size());
    for (int y = 0; y < ink.height; ++y)
        for (int x = 0; x < ink.width; ++x)
            if (const int label = ink.at(x, y); label != Labels::none && isBetweenAreas(marks, {x, y}))
                ++between[static_cast<size_t>(label)];
    std::vector<bool> edges(extents.size());
    for (size_t i = 0; i < edges.size(); ++i)
        edges[i] = between[i] * 10 >= extents[i].area * 6;
    return edges;
}

/// Where the first pixel of each mark lies.
std::vector<int> regionsOf(const Labels& ink, const TextMarks& marks) {
    std::vector<int> regions(static_cast<size_t>(ink.count), Labels::none);
    for (int y = 0; y < ink.height; ++y)
        for (int x = 0; x < ink.width; ++x)
            if (const int label = ink.at(x, y); label != Labels::none)
                if (int& region = regions[static_cast<size_t>(label)]; region == Labels::none)
                    region = marks.ground().regionAt({x, y});
    return regions;
}

/// The region of a mark: that of the photograph that it lies in, otherwise the one that most of its sides
/// border on. Inside an "O" there may be one of its own. A word with a soft shadow is like a low photograph,
/// but a word of what it borders on.
int regionAround(const QRect& box, int own, const TextMarks& marks) {
    constexpr int highestWord = 100;
    if (marks.ground().isShaded(own) && marks.ground().boxOf(own).height() > highestWord * marks.unit())
        return own;
    const QRect outer = box.adjusted(-2, -2, 2, 2) & QRect(QPoint(), marks.size());
    const QPoint middle = outer.center();
    const std::array<int, 5> regions{own, marks.ground().regionAt({outer.left(), middle.y()}),
        marks.ground().regionAt({outer.right(), middle.y()}),
        marks.ground().regionAt({middle.x(), outer.top()}),
        marks.ground().regionAt({middle.x(), outer.bottom()})};
    const auto sides = [&](int region) {
        return std::count(std::next(regions.begin()), regions.end(), region);
    };
    return *std::max_element(
        regions.begin(), regions.end(), [&](int a, int b) { return sides(a) < sides(b); });
}

void sortOut(Labels ink, Kind kind, const TextMarks& marks, MarkShapes& found, bool isFlat, QRgb colour = 0) {
    const std::vector<bool> underlines = findUnderlines(ink, marks.unit());
    if (!underlines.empty())
        ink = connect(
            ink.width, ink.height, Neighbours::eight,
            [&](size_t i) { return ink.of[i] != Labels::none && !underlines[i]; }, always);
    const std::vector<Extent> extents = extentsOf(ink);
    std::vector<bool> areRules = findRules(ink, extents, marks.unit());
    const std::vector<bool> edges = findEdges(ink, extents, marks);
    const std::vector<int> regions = regionsOf(ink, marks);
    const std::vector<bool> drawings =
        isFlat ? findDrawings(ink, extents, marks) : std::vector<bool>(extents.size());
    for (size_t i = 0; i < drawings.size(); ++i)
        if (drawings[i])
            found.drawings.push_back(extents[i].box);
    for (size_t i = 0; i < edges.size(); ++i)
        areRules[i] = areRules[i] || edges[i] || drawings[i];
    for (size_t i = 0; i < extents.size(); ++i) {
        if (areRules[i])
            continue;
        const int region = regionAround(extents[i].box, regions[i], marks);
        found.shapes.push_back({extents[i].box, region, marks.ground().isShaded(region), kind, colour});
    }
    if (kind == Kind::ownColour)
        return;
    Plane& rules = found.rules.try_emplace(kind, ink.width, ink.height).first->second;
    const auto isOf = [&](size_t i, bool rule) {
        return ink.of[i] != Labels::none && areRules[static_cast<size_t>(ink.of[i])] == rule;
    };
    for (int y = 0; y < ink.height; ++y)
        for (int x = 0; x < ink.width; ++x)
            if (const size_t i = ink.index(x, y); isOf(i, true) || (!underlines.empty() && underlines[i]))
                markRim(rules, x, y);
    for (size_t i = 0; i < underlines.size(); ++i)
        if (isOf(i, false))
            rules.pixels()[i] = 0;  // of the letter that the underline touches
}

}  // namespace

MarkShapes findMarkShapes(const TextMarks& marks) {
    const QRect everything(QPoint(), marks.size());
    MarkShapes found;
    found.size = marks.size();
    sortOut(
        flatInk(marks, marks.strengths(Kind::difference, everything)), Kind::difference, marks, found, true);
    if (!marks.ground().hasShades())
        return found;
    sortOut(shadedInk(marks, marks.strengths(Kind::difference, everything)), Kind::difference, marks, found,
        false);
    const LetterColours colours = findLetterColours(marks);
    for (const QRgb colour : colours.frequent)
        sortOut(inkOfColour(marks, colour, false), Kind::ownColour, marks, found, false, colour);
    for (const QRgb colour : std::set{colours.frequent.front(), colours.outlined})
        for (const QRect& letter : findOutlinedLetters(inkOfColour(marks, colour, true), marks))
            found.shapes.push_back({letter, regionOfOutlined, true, Kind::ownColour, colour});
    return found;
}

}  // namespace tralio
