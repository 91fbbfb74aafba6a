#include "programs/recogniser/picture_reader.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>

#include "ocr/reading_order.h"
#include "programs/recogniser/even_lines.h"
#include "programs/recogniser/repeated_lines.h"

namespace tralio {
namespace {

std::vector<TextBlock> findBlocks(const TextMarks& marks, const MarkShapes& shapes) {
    std::vector<TextLine> lines = findTextLines(shapes.shapes, marks.unit());
    const auto shaded = std::stable_partition(lines.begin(), lines.end(),
        [&](const TextLine& line) { return !marks.ground().isShaded(line.region); });
    std::vector<TextLine> even = evenLines({std::move_iterator(shaded), std::move_iterator(lines.end())});
    lines.erase(shaded, lines.end());
    lines.insert(lines.end(), std::move_iterator(even.begin()), std::move_iterator(even.end()));
    return groupIntoBlocks(std::move(lines));
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

}  // namespace

Reading readPicture(EnginePool& engines, const QStringList& packs, const QImage& image, Effort effort,
    const LinesRead& linesRead, WorkBudget budget) {
    const TextMarks marks(image);
    const MarkShapes shapes = findMarkShapes(marks);
    const std::vector<TextBlock> blocks = findBlocks(marks, shapes);
    const BlockPainter painter(marks, shapes, blocks);
    BlockReader reader(engines, packs, painter, budget);
    Reading all;
    for (const TextBlock& block : blocks) {
        if (!budget.allowsMore())
            break;
        addBetterLines(all.lines, reader.read(block, effort).lines);
        linesRead(std::ssize(all.lines));
    }
    placeInOrder(all.lines, image.height());
    return all;
}

}  // namespace tralio
