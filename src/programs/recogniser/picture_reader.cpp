#include "programs/recogniser/picture_reader.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <iterator>
#include <numeric>
#include <optional>
#include <semaphore>
#include <thread>
#include <utility>

#include "ocr/reading_order.h"
#include "programs/recogniser/lines/even_lines.h"
#include "programs/recogniser/marks/outlined_letters.h"
#include "programs/recogniser/mending/lone_dashes.h"
#include "programs/recogniser/mending/odd_signs.h"
#include "programs/recogniser/reading/repeated_lines.h"

namespace tralio {
namespace {

bool isOutlined(int region) {
    return region == regionOfOutlined;
}

bool isMostlyIn(const QRect& box, const QRect& other) {
    const QRect both = box & other;
    return both.width() * both.height() * 10 >= box.width() * box.height() * 6;
}

/// Leaves of what is seen where outlined lines stand only those: the rest are their outlines, and pieces.
void preferOutlined(std::vector<TextLine>& lines) {
    std::vector<QRect> outlined;
    for (const TextLine& line : lines)
        if (isOutlined(line.region))
            outlined.push_back(line.box.adjusted(-3, -3, 3, 3));
    std::erase_if(lines, [&](const TextLine& line) {
        return !isOutlined(line.region) &&
            std::ranges::any_of(outlined, [&](const QRect& box) { return isMostlyIn(line.box, box); });
    });
}

std::vector<TextBlock> findBlocks(const TextMarks& marks, const MarkShapes& shapes) {
    std::vector<TextLine> lines = findTextLines(shapes, marks.unit());
    const auto shaded = std::stable_partition(lines.begin(), lines.end(),
        [&](const TextLine& line) { return !marks.ground().isShaded(line.region); });
    std::vector<TextLine> even = evenLines({std::move_iterator(shaded), std::move_iterator(lines.end())});
    lines.erase(shaded, lines.end());
    lines.insert(lines.end(), std::move_iterator(even.begin()), std::move_iterator(even.end()));
    preferOutlined(lines);
    std::vector<TextBlock> blocks = groupIntoBlocks(std::move(lines));
    // Before what a photograph shows by chance, which may use up the time.
    std::stable_partition(
        blocks.begin(), blocks.end(), [](const TextBlock& block) { return isOutlined(block.region); });
    return blocks;
}

/// A toolbar: among many drawings, what is read as a few single signs are more of them.
bool areDrawings(const std::vector<ReadLine>& lines, const MarkShapes& shapes) {
    constexpr std::ptrdiff_t several = 3;
    return !lines.empty() && std::ssize(shapes.drawings) >= several * std::ssize(lines) &&
        std::ranges::all_of(lines, [](const ReadLine& line) {
            return std::ranges::all_of(line.words,
                [](const ReadWord& word) { return word.text.size() <= 1 && word.text.front() < u'\u1100'; });
        });
}

using Row = std::vector<ReadLine*>;

double middleOf(const ReadLine* line) {
    return line->box.center().y();
}

double gapBetween(const ReadLine* a, const ReadLine* b) {
    return std::max(a->box.left(), b->box.left()) - std::min(a->box.right(), b->box.right());
}

/// By how much a line stands higher or lower than its neighbour in a row, if it may be of that row. A scan is
/// a little turned: the row's other lines tell nothing.
std::optional<double> offsetIn(const Row& row, const ReadLine* line) {
    constexpr double sameRow = 0.4;  // of the mean of two heights, as the reading order has it
    const ReadLine* const neighbour =
        *std::ranges::min_element(row, {}, [&](const ReadLine* other) { return gapBetween(line, other); });
    // A headline or a large number beside a table does not join its rows.
    const auto [low, high] = std::minmax({line->box.height(), neighbour->box.height()});
    const double offset = std::abs(middleOf(line) - middleOf(neighbour));
    // Both may hold a piece of the rule between them.
    const bool isBeside = gapBetween(line, neighbour) >= -low / 2;
    return isBeside && offset <= sameRow * (low + std::min(high, 2 * low)) / 2 ? std::optional(offset)
                                                                               : std::nullopt;
}

/// From the top of the picture, each from the left.
std::vector<Row> rowsOf(std::vector<ReadLine>& lines) {
    Row order;
    order.reserve(lines.size());
    for (ReadLine& line : lines)
        order.push_back(&line);
    std::ranges::stable_sort(order, {}, middleOf);
    std::vector<Row> rows;  // those that begin higher come first
    for (ReadLine* const line : order) {
        Row* best = nullptr;
        double least = 0;
        for (Row& row : rows) {
            const std::optional<double> offset = offsetIn(row, line);
            if (!offset || (best && *offset >= least))
                continue;
            best = &row;
            least = *offset;
        }
        if (!best)
            best = &rows.emplace_back();
        best->push_back(line);
    }
    for (Row& row : rows)
        std::ranges::stable_sort(row, {}, [](const ReadLine* line) { return line->box.left(); });
    return rows;
}

/// The reading order's row tolerance is a fraction of the picture's height. In a tall picture consecutive
/// lines lie within it and would be sorted by their left edges. If any do, every line is given a left edge
/// that grows with its place (rows from the top, each row from the left): within the tolerance this edge
/// decides, beyond it the height does, with the same result.
void placeInOrder(std::vector<ReadLine>& lines, int pictureHeight) {
    const std::vector<Row> rows = rowsOf(lines);
    const auto isNearNext = [&](const Row& row, const Row& next) {
        const double upper = middleOf(*std::ranges::min_element(next, {}, middleOf));
        const double lower = middleOf(*std::ranges::max_element(row, {}, middleOf));
        return upper - lower <= leastRowTolerance * pictureHeight;
    };
    if (std::adjacent_find(rows.begin(), rows.end(), isNearNext) == rows.end())
        return;
    double rank = 0;
    for (const Row& row : rows)
        for (ReadLine* const line : row)
            line->box.moveLeft(rank++ / static_cast<double>(lines.size()));
}

/// Reads blocks, each by itself. A page is worth a second reader on a thread of its own, with engines of its
/// own. Each takes every second block, so that what is read does not depend on which is faster.
class BlocksReader final {
public:
    BlocksReader(const std::vector<TextBlock>& blocks, const QStringList& packs, const BlockPainter& painter,
        Effort effort)
        : m_blocks(blocks), m_packs(packs), m_painter(painter), m_effort(effort), m_readings(blocks.size()) {}

    /// The readings in the order of the blocks.
    std::vector<Reading> read(EnginePool& engines, WorkBudget& budget, const LinesRead& linesRead) {
        BlockReader reader(engines, m_packs, m_painter, budget);
        if (!isWorthTwo()) {
            readEvery(1, 0, m_blocks.size(), reader, budget, linesRead);
            readAgain(reader, budget);
            return std::move(m_readings);
        }
        // What comes to nothing in the first ones neither tries in the others.
        constexpr size_t alone = 2;
        readEvery(1, 0, alone, reader, budget, linesRead);
        budget.share();
        std::binary_semaphore isDone(0);
        const std::jthread beside([&, vain = reader.vainLooks()] {
            EnginePool ownEngines([&] { m_isAlive = true; });
            WorkBudget own = budget.ofAnotherThread();
            BlockReader other(ownEngines, m_packs, m_painter, own, vain);
            readEvery(2, alone + 1, m_blocks.size(), other, own, [](qsizetype) {});
            isDone.release();
        });
        readEvery(2, alone, m_blocks.size(), reader, budget, linesRead);
        // One that hangs says nothing, and is given up.
        while (!isDone.try_acquire_for(std::chrono::milliseconds(200)))
            if (m_isAlive.exchange(false))
                linesRead(m_linesRead);
        linesRead(m_linesRead);
        readAgain(reader, budget);
        return std::move(m_readings);
    }

private:
    [[nodiscard]] bool isWorthTwo() const {
        // Below that, loading engines takes longer than reading.
        constexpr size_t manyBlocks = 8;
        constexpr size_t manyLines = 48;
        const size_t lines = std::accumulate(m_blocks.begin(), m_blocks.end(), size_t(0),
            [](size_t sum, const TextBlock& block) { return sum + block.lines.size(); });
        return m_blocks.size() >= manyBlocks && lines >= manyLines && std::thread::hardware_concurrency() > 1;
    }

    void readEvery(size_t step, size_t first, size_t end, BlockReader& reader, const WorkBudget& budget,
        const LinesRead& linesRead) {
        for (size_t i = first; i < end && budget.allowsMore(); i += step) {
            m_readings[i] = reader.read(m_blocks[i], m_effort);
            linesRead(m_linesRead += std::ssize(m_readings[i].lines));
        }
    }

    void readAgain(BlockReader& reader, const WorkBudget& budget) {
        if (m_effort == Effort::oneLook)
            return;
        const PictureLanguages languages(m_readings);
        for (size_t i = 0; i < m_blocks.size() && budget.allowsMore(); ++i)
            reader.readAgain(m_blocks[i], languages, m_readings[i]);
        for (Reading& reading : m_readings)
            languages.writeRoubles(reading);
    }

    const std::vector<TextBlock>& m_blocks;
    const QStringList& m_packs;
    const BlockPainter& m_painter;
    Effort m_effort;
    std::vector<Reading> m_readings;
    std::atomic<qsizetype> m_linesRead = 0;
    std::atomic<bool> m_isAlive = false;  ///< the other reader, since it was last looked at
};

}  // namespace

Reading readPicture(EnginePool& engines, const QStringList& packs, const QImage& image, Effort effort,
    const LinesRead& linesRead, WorkBudget budget) {
    const TextMarks marks(image);
    const MarkShapes shapes = findMarkShapes(marks);
    const std::vector<TextBlock> blocks = findBlocks(marks, shapes);
    const BlockPainter painter(marks, shapes, blocks);
    Reading all;
    for (Reading& part : BlocksReader(blocks, packs, painter, effort).read(engines, budget, linesRead))
        addBetterLines(all.lines, std::move(part.lines));
    if (areDrawings(all.lines, shapes))
        return {};
    dropOddSigns(all.lines, blocks);
    addLoneDashes(all.lines, shapes.shapes, marks.unit());
    placeInOrder(all.lines, image.height());
    return all;
}

}  // namespace tralio
