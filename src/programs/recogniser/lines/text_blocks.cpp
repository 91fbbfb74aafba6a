#include "programs/recogniser/lines/text_blocks.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "programs/recogniser/marks/outlined_letters.h"
#include "programs/recogniser/pixels/boxes.h"
#include "programs/recogniser/pixels/resample.h"

namespace tralio {
namespace {

// So that what has been read is told in time.
constexpr size_t mostLines = 8;
constexpr size_t mostLetters = 800;

constexpr quint8 white = 255;
constexpr int border = 10;

/// Whether two heights are those of one type size, in hundredths.
bool areAlike(int a, int b, int atMost) {
    return std::max(a, b) * 100 <= std::min(a, b) * atMost;
}

/// Whether one line may follow the other below in one block.
bool mayFollow(const TextLine& lower, const TextLine& upper) {
    const int gap = lower.box.top() - upper.box.bottom();
    const bool isOfOneLayer =
        lower.region == upper.region && lower.kind == upper.kind && lower.colour == upper.colour;
    const bool isOfOneSize = areAlike(lower.letterHeight(), upper.letterHeight(), 150) ||
        areAlike(lower.box.height(), upper.box.height(), 125);
    return isOfOneLayer && isOfOneSize && upper.box.center().y() < lower.box.center().y() &&
        !shareRow(lower.box, upper.box) && gap <= std::max(lower.box.height(), upper.box.height()) * 3 / 2;
}

bool hasRoom(const TextBlock& block, const TextLine& line) {
    size_t letters = line.letters.size();
    for (const TextLine& other : block.lines)
        letters += other.letters.size();
    return block.lines.size() < mostLines && letters <= mostLetters;
}

/// The one line that stands directly above or below another, if there is just one. Columns make it several.
using Neighbour = std::optional<size_t>;

template <typename MayBe, typename Distance>
Neighbour onlyNeighbour(const std::vector<TextLine>& lines, MayBe mayBe, Distance distance) {
    Neighbour nearest;
    for (size_t i = 0; i < lines.size(); ++i)
        if (mayBe(i) && (!nearest || distance(i) < distance(*nearest)))
            nearest = i;
    if (!nearest)
        return nearest;
    for (size_t i = 0; i < lines.size(); ++i)
        if (i != *nearest && mayBe(i) && shareRow(lines[i].box, lines[*nearest].box))
            return std::nullopt;
    return nearest;
}

/// Makes words that are much fainter than others of their block as strong as those. A few marks may be noise.
void strengthenFaint(Plane& plane, const QRect& frame, const TextBlock& block, int full) {
    constexpr int visible = 16;
    constexpr std::ptrdiff_t fewest = 3;
    const auto strongest = [&](const QRect& letter) {
        int most = 0;
        const QRect box = (letter & frame).translated(-frame.topLeft());
        for (int y = box.top(); y <= box.bottom(); ++y)
            most = std::max<int>(
                most, *std::max_element(plane.row(y) + box.left(), plane.row(y) + box.right() + 1));
        return most;
    };
    const auto isFaint = [&](int strength) { return strength >= visible && strength * 2 < full; };
    std::vector<std::pair<QRect, int>> faint;
    for (const TextLine& line : block.lines) {
        const auto isFaintLetter = [&](const QRect& letter) { return isFaint(strongest(letter)); };
        if (std::ranges::count_if(line.letters, isFaintLetter) < fewest)
            continue;
        for (const std::vector<QRect>* boxes : {&line.letters, &line.dots})
            for (const QRect& box : *boxes)
                if (const int own = strongest(box); isFaint(own))
                    faint.emplace_back(box, own);
    }
    for (const auto& [letter, own] : faint) {
        const QRect box = (letter.adjusted(-1, -1, 1, 1) & frame).translated(-frame.topLeft());
        for (int y = box.top(); y <= box.bottom(); ++y)
            for (int x = box.left(); x <= box.right(); ++x)
                if (quint8& pixel = plane.row(y)[x]; pixel <= own)
                    pixel = static_cast<quint8>(pixel * full / own);
    }
}

}  // namespace

int TextBlock::letterHeight() const {
    constexpr size_t fewest = 4;
    std::vector<int> heights;
    for (const TextLine& line : lines)
        for (const QRect& letter : line.letters)
            heights.push_back(letter.height());
    if (heights.size() < fewest)
        return 0;
    const auto middle = heights.begin() + static_cast<std::ptrdiff_t>(heights.size() / 2);
    std::nth_element(heights.begin(), middle, heights.end());
    return *middle;
}

std::vector<TextBlock> groupIntoBlocks(std::vector<TextLine> lines) {
    std::sort(lines.begin(), lines.end(),
        [](const TextLine& a, const TextLine& b) { return a.box.top() < b.box.top(); });
    constexpr int indentation = 6;  // letter heights that a line may begin beside the end of the other
    const auto isNear = [&](size_t lower, size_t upper) {
        const int height = std::max(lines[lower].letterHeight(), lines[upper].letterHeight());
        return horizontalGap(lines[lower].box, lines[upper].box) <= indentation * height &&
            mayFollow(lines[lower], lines[upper]);
    };
    const auto follows = [&](size_t lower, size_t upper) {
        return horizontalGap(lines[lower].box, lines[upper].box) < 0 && mayFollow(lines[lower], lines[upper]);
    };
    const auto neighbour = [&](size_t of, auto related) {
        return onlyNeighbour(
            lines, [&](size_t i) { return i != of && related(i); },
            [&](size_t i) { return std::abs(lines[i].box.center().y() - lines[of].box.center().y()); });
    };
    const auto above = [&](size_t line) {
        const bool anyOver = std::any_of(
            lines.begin(), lines.end(),
            [&](const TextLine& other) { return follows(line, static_cast<size_t>(&other - lines.data())); });
        return neighbour(
            line, [&](size_t i) { return anyOver ? follows(line, i) : isNear(line, i); });
    };
    const auto below = [&](size_t line) {
        const bool anyUnder = std::any_of(lines.begin(), lines.end(),
            [&](const TextLine& other) { return follows(static_cast<size_t>(&other - lines.data()), line); });
        return neighbour(line, [&](size_t i) { return anyUnder ? follows(i, line) : isNear(i, line); });
    };

    std::vector<TextBlock> blocks;
    std::vector<size_t> blockOf(lines.size());
    for (size_t i = 0; i < lines.size(); ++i) {
        const Neighbour upper = above(i);
        const bool isOfColumn = upper && *upper < i && below(*upper) == i;
        const bool continues = isOfColumn && hasRoom(blocks[blockOf[*upper]], lines[i]);
        if (!continues)
            blocks.push_back({{}, {}, lines[i].region, lines[i].isShaded, lines[i].kind, lines[i].colour});
        blockOf[i] = continues ? blockOf[*upper] : blocks.size() - 1;
        TextBlock& block = blocks[blockOf[i]];
        block.box |= lines[i].box;
        block.lines.push_back(lines[i]);
    }
    return blocks;
}

BlockPicture BlockPicture::strip(double top, double bottom) const {
    const auto row = [this](double y) {
        return qRound(std::clamp((y - origin.y()) * scale, 0.0, double(plane.height())));
    };
    const int first = row(top);
    const int count = row(bottom) - first;
    if (count <= 0 || count == plane.height())
        return *this;
    const Plane part = cut(plane, QRect(0, first, plane.width(), count));
    return {withBorder(part, border, white), scale, origin + QPointF(-border, first - border) / scale};
}

BlockPainter::BlockPainter(
    const TextMarks& marks, const MarkShapes& shapes, const std::vector<TextBlock>& blocks)
    : m_marks(marks), m_shapes(shapes), m_blocks(blocks) {}

QRect BlockPainter::frameOf(const TextBlock& block) const {
    int height = 0;
    for (const TextLine& line : block.lines)
        height = std::max(height, line.box.height());
    return block.box.adjusted(-height * 2 / 3, -height / 2, height * 2 / 3, height / 2) &
        QRect(QPoint(), m_marks.size());
}

double BlockPainter::balanceOf(const TextBlock& block) const {
    return balance(m_marks.strengths(TextMarks::Kind::brighter, block.box),
        m_marks.strengths(TextMarks::Kind::darker, block.box));
}

BlockPicture BlockPainter::paint(const TextBlock& block, TextMarks::Kind kind) const {
    constexpr int rim = 1;
    const QRect frame = frameOf(block);
    Plane plane = kind == TextMarks::Kind::ownColour
        ? m_marks.likeness(block.colour, frame, block.region == regionOfOutlined)
        : m_marks.strengths(kind, frame);
    const auto wipe = [&](const QRect& box) {
        const QRect part = box.adjusted(-rim, -rim, rim, rim) & frame;
        if (part.isEmpty())
            return;
        for (int y = part.top(); y <= part.bottom(); ++y)
            std::fill_n(plane.row(y - frame.top()) + part.left() - frame.left(), part.width(), quint8(0));
    };
    const auto isOwn = [&](const QRect& box) {
        return std::any_of(block.lines.begin(), block.lines.end(), [&](const TextLine& line) {
            return line.box.intersects(box) &&
                std::any_of(line.letters.begin(), line.letters.end(),
                    [&](const QRect& letter) { return letter.intersects(box); });
        });
    };
    for (const TextLine& line : block.lines)
        for (const QRect& box : line.unread)
            wipe(box);
    for (const TextBlock& other : m_blocks) {
        // What else is seen around an outlined letter is its outline.
        if (block.region == regionOfOutlined && other.region != regionOfOutlined)
            continue;
        if (&other == &block || !other.box.adjusted(-rim, -rim, rim, rim).intersects(frame))
            continue;
        for (const TextLine& line : other.lines)
            for (const std::vector<QRect>* boxes : {&line.letters, &line.dots, &line.unread})
                for (const QRect& box : *boxes)
                    if (!isOwn(box))
                        wipe(box);
    }
    auto mask = m_shapes.rules.find(kind);
    if (mask == m_shapes.rules.end() && !block.isShaded)
        mask = m_shapes.rules.find(TextMarks::Kind::difference);
    if (mask != m_shapes.rules.end()) {
        for (int y = 0; y < frame.height(); ++y) {
            const quint8* rules = mask->second.row(frame.top() + y) + frame.left();
            quint8* row = plane.row(y);
            for (int x = 0; x < frame.width(); ++x)
                if (rules[x] != 0)
                    row[x] = 0;
        }
    }

    const int full = fullStrength(plane);
    if (!block.isShaded)
        strengthenFaint(plane, frame, block, full);
    for (quint8& pixel : plane.pixels())
        pixel = static_cast<quint8>(white - std::min(255, pixel * 255 / full));

    // Engines read letters of this height best. Smaller ones gain from more than this, but so do their flaws.
    constexpr double bestHeight = 20;
    constexpr double mostEnlarging = 2.5;
    constexpr double mostShrinking = 0.2;
    constexpr double hardlyShrinking = 0.6;
    constexpr int fewLetters = 28;  // with few of them, they are capitals and digits as often as not
    const int height = block.letterHeight();
    const double wanted = height > 0
        ? bestHeight / height
        : std::min(mostEnlarging / m_marks.unit(),
              double(fewLetters) / std::max(1, block.lines.front().letterHeight()));
    BlockPicture picture;
    picture.scale = std::clamp(wanted, mostShrinking, mostEnlarging);
    if (picture.scale < 1 && picture.scale > hardlyShrinking)
        picture.scale = 1;
    // The library counts the columns of a picture in 16 bits.
    constexpr double mostColumns = 32767 - 2 * border;
    picture.scale = std::min(picture.scale, mostColumns / plane.width());
    picture.origin = QPointF(frame.topLeft()) - QPointF(border, border) / picture.scale;
    if (picture.scale != 1)
        plane = resample(plane, std::max(1, qRound(plane.width() * picture.scale)),
            std::max(1, qRound(plane.height() * picture.scale)));
    picture.plane = withBorder(plane, border, white);
    return picture;
}

}  // namespace tralio
