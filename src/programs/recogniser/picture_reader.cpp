#include "programs/recogniser/picture_reader.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "ocr/reading_order.h"
#include "programs/recogniser/even_lines.h"

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

/// The reading order's row tolerance is a fraction of the picture's height. In a tall picture consecutive
/// lines lie within it and would be sorted by their left edges. If any do, every line is given a left edge
/// that grows with its place (rows from the top, each row from the left): within the tolerance this edge
/// decides, beyond it the height does, with the same result.
void placeInOrder(std::vector<ReadLine>& lines, int pictureHeight) {
    constexpr double sameRow = 0.4;  // of the mean of two heights, as the reading order has it
    const auto middle = [](const ReadLine* line) { return line->box.center().y(); };
    const auto isBelowRow = [&](const ReadLine& line, const ReadLine& row) {
        // A headline or a large number beside a table does not join its rows.
        const auto [low, high] = std::minmax({line.box.height(), row.box.height()});
        return line.box.center().y() - row.box.center().y() > sameRow * (low + std::min(high, 2 * low)) / 2;
    };
    std::vector<ReadLine*> order;
    order.reserve(lines.size());
    for (ReadLine& line : lines)
        order.push_back(&line);
    std::ranges::stable_sort(order, {}, middle);
    bool areRowsNear = false;
    for (auto first = order.begin(); first != order.end();) {
        const auto next = std::find_if(
            first, order.end(), [&](const ReadLine* line) { return isBelowRow(*line, **first); });
        areRowsNear |= next != order.end() &&
            middle(*next) - middle(*std::prev(next)) <= leastRowTolerance * pictureHeight;
        std::stable_sort(
            first, next, [](const ReadLine* a, const ReadLine* b) { return a->box.left() < b->box.left(); });
        first = next;
    }
    if (!areRowsNear)
        return;
    for (size_t rank = 0; rank < order.size(); ++rank)
        order[rank]->box.moveLeft(double(rank) / double(order.size()));
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
        Reading part = reader.read(block, effort);
        all.lines.insert(
            all.lines.end(), std::move_iterator(part.lines.begin()), std::move_iterator(part.lines.end()));
        linesRead(std::ssize(all.lines));
    }
    placeInOrder(all.lines, image.height());
    return all;
}

}  // namespace tralio
